#pragma once

#include "CCEntryPoint.h"

// The host's base of the entry object of a module that shows dialogs. On the Windows host it
// keeps the dialog framework's per-module state; the module's Qt dialogs need none, so it adds
// nothing to CCEntryPoint here and exists to keep the host's class hierarchy.
class CCEntryPointMFC : public CCEntryPoint
{
protected:
    CCEntryPointMFC() = default;
    ~CCEntryPointMFC() override = default;
};
