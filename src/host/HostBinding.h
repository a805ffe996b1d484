#pragma once

#include "HostTypes.h"

class CVRServices;
class CFxSystemServices;
class CFxDocument;
class ICadServices;
class IDrawingLanguage;
class IComponentPalette;

// Everything the module reaches in the host. Whoever runs the module (the desktop host, the
// command-line program, a test) installs one binding at start-up; the module never creates
// host objects itself. A missing piece makes its calls do nothing and answer empty values.
struct HostBinding
{
    CVRServices* electrical = nullptr;
    CFxSystemServices* system = nullptr;
    CFxDocument* document = nullptr;
    ICadServices* cad = nullptr;
    IDrawingLanguage* language = nullptr;
    KVWindowId mainWindow = 0;
    IComponentPalette* palette = nullptr;
};

void InstallHost(const HostBinding& binding);
const HostBinding& InstalledHost();

// Installs a binding for the life of a scope and puts the previous one back afterwards.
class ScopedHostBinding
{
public:
    explicit ScopedHostBinding(const HostBinding& binding);
    ~ScopedHostBinding();
    ScopedHostBinding(const ScopedHostBinding&) = delete;
    ScopedHostBinding& operator=(const ScopedHostBinding&) = delete;

private:
    HostBinding m_previous;
};
