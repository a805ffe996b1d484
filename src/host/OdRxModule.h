#pragma once

#include "HostTypes.h"
#include "KVString.h"
#include "OdAlloc.h"

#include <atomic>
#include <cstdint>
#include <new>
#include <type_traits>

// A module as the drawing runtime holds it once the module's library is loaded. The runtime
// creates it through the library's export odrxCreateModuleObject, calls initApp, and at unload
// uninitApp and then deleteModule. The virtual operations are in the runtime's slot order.
class OdRxModule
{
public:
    OdRxModule(const OdRxModule&) = delete;
    OdRxModule& operator=(const OdRxModule&) = delete;

    virtual void addRef() = 0;
    virtual void release() = 0;
    virtual std::int32_t numRefs() const = 0;
    // The handle of the module's library file that the runtime handed over at creation.
    virtual KVModuleHandle moduleHandle() const = 0;
    // Destroys the object and frees its memory; the module can then be created anew.
    virtual void deleteModule() = 0;
    // The full path of the module's library file.
    virtual KVString moduleName() const = 0;
    virtual void initApp() = 0;
    virtual void uninitApp() = 0;

protected:
    OdRxModule() = default;
    // Only deleteModule destroys a module.
    virtual ~OdRxModule() = default;
};

// The runtime interface version a module reports through odrxGetAPIVersion.
struct OdRxApiVersion
{
    std::uint32_t majorVersion;
    std::uint32_t minorVersion;
    std::uint32_t patchVersion;
    std::uint32_t buildVersion;
};
inline constexpr OdRxApiVersion kOdRxApiVersion{26, 8, 0, 54832};

// The two unmangled exports of a module library, as a host resolves them.
inline constexpr char kOdrxCreateModuleObjectSymbol[] = "odrxCreateModuleObject";
inline constexpr char kOdrxGetApiVersionSymbol[] = "odrxGetAPIVersion";
// Takes the handle of the loaded library file from the caller's variable (and sets it to null)
// the first time; later calls return the same object and leave the variable alone.
using OdrxCreateModuleObjectFunction = OdRxModule* (*)(KVModuleHandle& module);
using OdrxGetApiVersionFunction = void (*)(std::uint32_t& majorVersion, std::uint32_t& minorVersion,
                                           std::uint32_t& patchVersion,
                                           std::uint32_t& buildVersion);

// The full path of a loaded module's library file. Windows reads it from the module handle;
// elsewhere it is the file that holds `addressInModule` (any object of the module's own).
KVString odrxModuleFileName(KVModuleHandle module, const void* addressInModule);

// The object the runtime holds for a module: the module's class T with the runtime's reference
// count and the handle of the module's file. There is one per module and process: the first
// createModuleObject makes it and publishes it in a process-wide pointer (typed as TBase), later
// calls return it, and deleteModule clears the pointer again.
template <class T, class TBase = T> class OdRxWin32Module final : public T
{
    static_assert(std::is_base_of_v<OdRxModule, TBase>, "a module derives from OdRxModule");
    static_assert(std::is_base_of_v<TBase, T>, "the module class derives from TBase");

public:
    static OdRxModule* createModuleObject(KVModuleHandle& module)
    {
        if (!s_instance) {
            void* memory = odrxAllocOrThrow(sizeof(OdRxWin32Module));
            try {
                s_instance = ::new (memory) OdRxWin32Module(module);
            } catch (...) {
                odrxFree(memory);
                throw;
            }
            // The module object owns the handle from now on.
            module = nullptr;
        }
        return s_instance;
    }

    void addRef() override { m_refCount.fetch_add(1); }
    void release() override { m_refCount.fetch_sub(1); }
    std::int32_t numRefs() const override { return m_refCount.load(); }
    KVModuleHandle moduleHandle() const override { return m_module; }
    void deleteModule() override
    {
        s_instance = nullptr;
        this->~OdRxWin32Module();
        odrxFree(this);
    }
    KVString moduleName() const override { return odrxModuleFileName(m_module, &s_instance); }

private:
    explicit OdRxWin32Module(KVModuleHandle module) : m_module(module) {}
    ~OdRxWin32Module() override = default;

    inline static TBase* s_instance = nullptr;
    std::atomic<std::int32_t> m_refCount{0};
    KVModuleHandle m_module;
};
