// Symbols for the public members that the headers define inline, as in the utility library: each has a place here.

#include <tuple>

#include "fw_ApplicationArguments.h"
#include "fw_Container.h"
#include "fw_Exception.h"
#include "fw_ThreadInfo.h"

namespace framework {
namespace {

[[gnu::used]] constexpr std::tuple members(&ApplicationArguments::getArgs, &Container::getContainer,
                                           &Container::getMemory, &Exception::code, &Exception::line,
                                           &Exception::function, &Exception::message, &Exception::flag,
                                           &ThreadInfo::getNum, &ThreadInfo::getThreadName);

} // namespace
} // namespace framework
