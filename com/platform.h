// The Windows and COM headers, in the one order in which they compile.
#pragma once

#include <windows.h>

#include <objbase.h>

#include <ocidl.h>
#include <oleauto.h>
