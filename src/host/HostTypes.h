#pragma once

#include <QtGlobal>

// Opaque handles of the platform: a window and a loaded module (its resources).
using KVWindowId = quintptr;
using KVModuleHandle = void*;

// The host's result code for an operation that the user completed normally (not cancelled).
inline constexpr int KV_RESULT_OK = 5100;
