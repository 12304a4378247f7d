#include "ut_ReadLockGuard.h"
