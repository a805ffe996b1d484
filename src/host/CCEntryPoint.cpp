#include "CCEntryPoint.h"

bool CCEntryPoint::registerFunction(const KVString& name, DrawingLanguageFunction function)
{
    return kvRegisterFunction(name, std::move(function));
}
