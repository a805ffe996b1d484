// A shared library without the module exports.
#include <QtGlobal>

extern "C" Q_DECL_EXPORT int kvNotAModule()
{
    return 1;
}
