// The time-zone helper under the name the bar tests use.
#pragma once

#include "support/TimeZone.h"

using fftest::ScopedTimeZone;
