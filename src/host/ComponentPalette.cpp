#include "ComponentPalette.h"

#include "HostBinding.h"

IComponentPalette* GetComponentPalette()
{
    return InstalledHost().palette;
}
