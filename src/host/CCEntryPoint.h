#pragma once

#include "DrawingLanguage.h"
#include "OdRxModule.h"

// The host's base of a module's entry object: the runtime calls initApp after creating the module
// and uninitApp before deleting it; a module overrides them to add and remove its commands. The
// reference count, the handle and the deletion come from the runtime's module template
// (OdRxWin32Module) instantiated on the module's class.
class CCEntryPoint : public OdRxModule
{
public:
    void initApp() override {}
    void uninitApp() override {}

protected:
    CCEntryPoint() = default;
    ~CCEntryPoint() override = default;

    // Makes `function` callable from the drawing language as `name`. False when the host has no
    // drawing language or does not take the function.
    static bool registerFunction(const KVString& name, DrawingLanguageFunction function);
};
