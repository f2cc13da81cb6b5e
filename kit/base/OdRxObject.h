// Shared ownership of the kit's long-lived objects (devices, views, drawing contexts, layout
// helpers): an intrusive reference count, so that a raw pointer handed through an interface can
// always be wrapped again without a second control block.
#pragma once

#include <cstddef>
#include <utility>

class OdRxObject {
public:
  OdRxObject() = default;
  OdRxObject(const OdRxObject&) : refs_(0) {}
  OdRxObject& operator=(const OdRxObject&) { return *this; }
  virtual ~OdRxObject() = default;

  void addRef() const { ++refs_; }
  // Deletes the object with its last reference.
  void release() const {
    if (--refs_ == 0) delete this;
  }
  long numRefs() const { return refs_; }

private:
  mutable long refs_ = 0;
};

// A counted reference to an OdRxObject (or anything derived from it).
template <class T>
class OdSmartPtr {
public:
  OdSmartPtr() = default;
  OdSmartPtr(std::nullptr_t) {}
  OdSmartPtr(T* object) : p_(object) { acquire(); }
  OdSmartPtr(const OdSmartPtr& other) : p_(other.p_) { acquire(); }
  OdSmartPtr(OdSmartPtr&& other) noexcept : p_(std::exchange(other.p_, nullptr)) {}
  template <class U>
  OdSmartPtr(const OdSmartPtr<U>& other) : p_(other.get()) {
    acquire();
  }
  ~OdSmartPtr() { drop(); }

  OdSmartPtr& operator=(const OdSmartPtr& other) {
    if (this != &other) reset(other.p_);
    return *this;
  }
  OdSmartPtr& operator=(OdSmartPtr&& other) noexcept {
    if (this != &other) {
      drop();
      p_ = std::exchange(other.p_, nullptr);
    }
    return *this;
  }
  OdSmartPtr& operator=(T* object) {
    reset(object);
    return *this;
  }

  // The object as T when it is one, else null.
  static OdSmartPtr cast(const OdRxObject* object) {
    return OdSmartPtr(dynamic_cast<T*>(const_cast<OdRxObject*>(object)));
  }

  T* get() const { return p_; }
  T* operator->() const { return p_; }
  T& operator*() const { return *p_; }
  explicit operator bool() const { return p_ != nullptr; }
  bool isNull() const { return p_ == nullptr; }
  // Gives up this reference (the object goes with its last one) and leaves the pointer null.
  void release() { drop(); }

  friend bool operator==(const OdSmartPtr& a, const OdSmartPtr& b) { return a.p_ == b.p_; }
  friend bool operator==(const OdSmartPtr& a, std::nullptr_t) { return a.p_ == nullptr; }

private:
  void acquire() {
    if (p_) p_->addRef();
  }
  void drop() {
    if (T* old = std::exchange(p_, nullptr)) old->release();
  }
  void reset(T* object) {
    if (object) object->addRef();
    drop();
    p_ = object;
  }

  T* p_ = nullptr;
};

// The concrete class of an object created through one of its interfaces:
// OdRxObjectImpl<MyView, OdGsView>::createObject() gives an OdSmartPtr<OdGsView>.
template <class Impl, class Interface = Impl>
class OdRxObjectImpl : public Impl {
public:
  using Impl::Impl;

  static OdSmartPtr<Interface> createObject() { return OdSmartPtr<Interface>(new OdRxObjectImpl<Impl, Interface>()); }
};
