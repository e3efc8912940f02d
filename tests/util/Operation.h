// How the lists of operations are written down: a line that does not hold does not compile.
// Says nothing of what an operation does.
#pragma once

#include <concepts>
#include <type_traits>

/// True for an `Operation` of exactly the type `Type`: its arguments, its result, and const or
/// not. Of several overloads it picks the one of that type; without one there is no program.
/// An operator stands in parentheses, or clang-format would take its name apart.
template <class Type, Type Operation>
inline constexpr bool Has = true;

/// An argument for parameters of that very type, with no promotion and no conversion on the way.
template <class Type>
struct Only {
    template <std::same_as<Type> Exact>
    operator Exact() const;
};
template <class Type>
struct Only<Type&> {
    template <std::same_as<Type> Exact>
    operator Exact&() const;
};

template <class... Arguments>
inline constexpr bool AllByValue = sizeof...(Arguments) > 0 &&
                                   (!std::is_reference_v<Arguments> && ...);

/// Whether `Class` has a constructor with exactly these parameters.
template <class Class, class... Arguments>
inline constexpr bool HasConstructor =
    std::is_constructible_v<Class, Only<Arguments>...> &&
    !(AllByValue<Arguments...> && std::is_constructible_v<Class, Only<const Arguments&>...>);
