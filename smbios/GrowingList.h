// A list that grows at its end, without exceptions.
// Memory that cannot be had is a result: a program for machines in trouble may have none for an
// exception either.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>

template <typename Element>
class GrowingList {
  public:
    /// False, and no change, when memory cannot be had.
    bool Append(Element element) {
        if (m_size == m_room && !Grow()) {
            return false;
        }
        m_elements[m_size++] = element;
        return true;
    }
    size_t Size() const { return m_size; }
    /// Requires: index is below Size().
    Element operator[](size_t index) const { return m_elements[index]; }

  private:
    bool Grow() {
        constexpr size_t kFirstRoom = 16;
        const size_t room = std::max(kFirstRoom, 2 * m_room);
        std::unique_ptr<Element[]> elements(new (std::nothrow) Element[room]);
        if (elements == nullptr) {
            return false;
        }
        std::copy_n(m_elements.get(), m_size, elements.get());
        m_elements = std::move(elements);
        m_room = room;
        return true;
    }

    std::unique_ptr<Element[]> m_elements;
    size_t m_size = 0;
    size_t m_room = 0;
};
