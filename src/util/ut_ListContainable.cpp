#include "ut_ListContainable.h"

namespace utility {

ListContainable::~ListContainable() = default;

} // namespace utility
