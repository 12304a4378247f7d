#include "ut_WriteLockGuard.h"
