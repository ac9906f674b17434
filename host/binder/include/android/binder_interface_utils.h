/**
 * The base classes of AIDL interfaces: counted objects, their local implementations (Bn) and their
 * proxies (Bp).
 *
 * Who keeps whom: the binder object holds its implementation, the implementation knows its binder
 * object weakly, a proxy holds its binder object. So an implementation lives at least as long as
 * anyone, here or in another process, can call it.
 */
#pragma once

#include <android/binder_auto_utils.h>
#include <android/binder_ibinder.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace ndk {

/**
 * An object owned by shared_ptr that can find its own shared_ptr. make() is the only way to create
 * one; its memory comes from malloc. All methods are thread-safe. The process aborts if such an
 * object is destroyed without ever having had a shared_ptr, or while one still owns it; so a
 * constructor must not let a reference to the object it makes come and go.
 */
class SharedRefBase {
  public:
    SharedRefBase() = default;
    SharedRefBase(const SharedRefBase&) = delete;
    SharedRefBase& operator=(const SharedRefBase&) = delete;

    virtual ~SharedRefBase() {
        std::call_once(mOwned, [] { internal::Die("SharedRefBase: never owned by a shared_ptr"); });
        if (!mThis.expired()) internal::Die("SharedRefBase: destroyed while still owned");
    }

    /** Another owner of this object; null once its destructor runs. */
    std::shared_ptr<SharedRefBase> ref() {
        std::shared_ptr<SharedRefBase> first;
        std::call_once(mOwned, [&] {
            first.reset(this);
            mThis = first;
        });
        return first != nullptr ? first : mThis.lock();
    }

    /** The same as a CHILD, which must be a class of this object. */
    template <typename CHILD>
    std::shared_ptr<CHILD> ref() {
        return std::static_pointer_cast<CHILD>(ref());
    }

    /** Creates a T from the arguments. */
    template <class T, class... Args>
    static std::shared_ptr<T> make(Args&&... args) {
        static_assert(alignof(T) <= alignof(std::max_align_t), "malloc aligns no further");
        T* object = new T(std::forward<Args>(args)...);
        // NOLINTNEXTLINE(clang-analyzer-unix.Malloc): the first ref() gives it its owner
        return object->SharedRefBase::template ref<T>();
    }

    // NOLINTNEXTLINE(cert-dcl54-cpp): its operator new is private
    static void operator delete(void* memory) { std::free(memory); }

  private:
    static void* operator new(std::size_t size) {
        void* memory = std::malloc(size);
        if (memory == nullptr) internal::Die("SharedRefBase: out of memory");
        return memory;
    }
    static void* operator new[](std::size_t) = delete;

    std::once_flag mOwned;
    std::weak_ptr<SharedRefBase> mThis;
};

}  // namespace ndk

// std::make_shared places objects past the class's own operator new; for a SharedRefBase that would
// give a shared_ptr which ref() does not know. (std::make_unique already fails on operator new.)
// NOLINTNEXTLINE(cert-dcl58-cpp): only takes away what would go wrong
namespace std {
template <typename T, typename... Args,
          enable_if_t<is_base_of_v<::ndk::SharedRefBase, T>, bool> = true>
shared_ptr<T> make_shared(Args&&...) = delete;
}  // namespace std

namespace ndk {

/** Root of all AIDL interfaces, local and remote. Methods may be called from any thread. */
class ICInterface : public SharedRefBase {
  public:
    ICInterface() = default;
    ~ICInterface() override = default;

    /**
     * The implementation behind a local binder object whose class came from defineClass; null for
     * a remote object.
     */
    static std::shared_ptr<ICInterface> asInterface(AIBinder* binder) {
        void* userData = AIBinder_getUserData(binder);
        return userData == nullptr ? nullptr : *static_cast<Holder*>(userData);
    }

    /** The binder object of this implementation or proxy. */
    virtual SpAIBinder asBinder() = 0;

    /** True if calls leave the process. */
    virtual bool isRemote() = 0;

    /** Writes a text about the object to `fd`, which stays the caller's. */
    virtual binder_status_t dump(int /*fd*/, const char** /*args*/, uint32_t /*numArgs*/) {
        return STATUS_OK;
    }

    /**
     * The class of an AIDL interface, which lives for ever. Its objects are made with the
     * ICInterface as argument (as ICInterface* or a class that starts with it) and hold it until
     * they die. Null if an argument is null.
     */
    static AIBinder_Class* defineClass(const char* interfaceDescriptor,
                                       AIBinder_Class_onTransact onTransact) {
        AIBinder_Class* clazz =
                AIBinder_Class_define(interfaceDescriptor, OnCreate, OnDestroy, onTransact);
        if (clazz != nullptr) AIBinder_Class_setOnDump(clazz, OnDump);
        return clazz;
    }

  private:
    // The user data of a local binder object is a heap copy of its implementation's shared_ptr.
    using Holder = std::shared_ptr<ICInterface>;

    static void* OnCreate(void* args) {
        return new Holder(static_cast<ICInterface*>(args)->ref<ICInterface>());
    }
    static void OnDestroy(void* userData) { delete static_cast<Holder*>(userData); }
    static binder_status_t OnDump(AIBinder* binder, int fd, const char** args, uint32_t numArgs) {
        const std::shared_ptr<ICInterface> implementation = asInterface(binder);
        if (implementation == nullptr) return STATUS_DEAD_OBJECT;
        return implementation->dump(fd, args, numArgs);
    }
};

/**
 * A local implementation of INTERFACE. Its binder object is made on first use and remembered
 * weakly: once all references to it are gone, the next asBinder() makes another one.
 */
template <typename INTERFACE>
class BnCInterface : public INTERFACE {
  public:
    BnCInterface() = default;
    ~BnCInterface() override = default;

    SpAIBinder asBinder() final {
        std::lock_guard<std::mutex> lock(mMutex);
        SpAIBinder binder = mWeakBinder.promote();
        if (binder.get() == nullptr) {
            binder = createBinder();
            mWeakBinder.set(AIBinder_Weak_new(binder.get()));
        }
        return binder;
    }

    bool isRemote() final { return false; }

    /** The name a service manager knows `instance` of this interface by. */
    static std::string makeServiceName(std::string_view instance) {
        std::string name(INTERFACE::descriptor);
        return name.append("/").append(instance);
    }

  protected:
    /** A new binder object of this interface's class around this object. */
    virtual SpAIBinder createBinder() = 0;

  private:
    std::mutex mMutex;
    ScopedAIBinder_Weak mWeakBinder;
};

/** A proxy for an INTERFACE behind a binder object that it keeps alive. */
template <typename INTERFACE>
class BpCInterface : public INTERFACE {
  public:
    explicit BpCInterface(const SpAIBinder& binder) : mBinder(binder) {}
    ~BpCInterface() override = default;

    SpAIBinder asBinder() final { return mBinder; }
    bool isRemote() final { return AIBinder_isRemote(mBinder.get()); }
    binder_status_t dump(int fd, const char** args, uint32_t numArgs) override {
        return AIBinder_dump(mBinder.get(), fd, args, numArgs);
    }

  private:
    SpAIBinder mBinder;
};

}  // namespace ndk
