// Every operation of CCLParams with its argument and result types.
// The test is the compilation: what is missing here does not compile.
#include <cstdint>
#include <type_traits>

#include "util/CLParams.h"
#include "util/Operation.h"

namespace {

using Node = CCLParams::CLParamDef;

static_assert(HasConstructor<CCLParams>);
static_assert(std::is_destructible_v<CCLParams>);
static_assert(!std::is_polymorphic_v<CCLParams>);
static_assert(!std::is_copy_constructible_v<CCLParams>);
static_assert(!std::is_copy_assignable_v<CCLParams>);

static_assert(Has<bool (CCLParams::*)(CString, CLParamModes, bool), &CCLParams::Add>);
static_assert(Has<int (CCLParams::*)(int, char**, bool), &CCLParams::Parse>);
static_assert(Has<bool (CCLParams::*)(CString), &CCLParams::GetValue>);
static_assert(Has<bool (CCLParams::*)(CString, CString&), &CCLParams::GetValue>);
static_assert(Has<bool (CCLParams::*)(unsigned, CString&), &CCLParams::GetValue>);
static_assert(Has<bool (CCLParams::*)(CString, bool), &CCLParams::IsSwitch>);
static_assert(Has<int (CCLParams::*)(int&, int, char**, CString, CString&), &CCLParams::GetParam>);
static_assert(
    Has<int (CCLParams::*)(int&, int, char**, CString, CString&), &CCLParams::GetPathParam>);
static_assert(Has<Node* (CCLParams::*)(), &CCLParams::MakeNewNode>);
static_assert(Has<void (CCLParams::*)(), &CCLParams::DeleteNodes>);

// --- Paths, and the length of the command line --------------------------------------------------

static_assert(Has<bool (CCLParams::*)(CString, CDir&), &CCLParams::GetValue>);
static_assert(Has<bool (CCLParams::*)(unsigned, CDir&), &CCLParams::GetValue>);
static_assert(Has<int (CCLParams::*)() const, &CCLParams::GetNumberOfCommandLineCharacters>);

// --- One entry ----------------------------------------------------------------------------------

static_assert(CLP_SWITCH == 1);
static_assert(CLP_VALUE == 2);
static_assert(CLP_PATH == 3);
static_assert(sizeof(CLParamModes) == sizeof(int32_t));

static_assert(Has<Node * Node::*, &Node::pPrev>);
static_assert(Has<Node * Node::*, &Node::pNext>);
static_assert(Has<CString Node::*, &Node::sName>);
static_assert(Has<CString Node::*, &Node::sValue>);
static_assert(Has<bool Node::*, &Node::bFound>);
static_assert(Has<bool Node::*, &Node::bRequired>);
static_assert(Has<CLParamModes Node::*, &Node::eMode>);
static_assert(!std::is_polymorphic_v<Node>);

}  // namespace
