#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

namespace Torvix {

/**
 * Counted base of objects that a SharedPtr holds.
 *
 * The count is a plain integer that starts at 0: everything that is shared this way lives on the
 * interpreter's thread. At 0 the object is deleted through its virtual destructor. A copy of an
 * object starts with a count of its own.
 */
class Shared
{
public:
    Shared() = default;
    Shared(const Shared&) {}
    Shared& operator=(const Shared&) { return *this; }
    virtual ~Shared() = default;

    void ref() const { ++m_refCount; }

    /** True when this was the last reference; the caller then deletes the object. */
    bool deref() const { return --m_refCount == 0; }

    int refCount() const { return m_refCount; }

private:
    mutable int m_refCount = 0;
};

/**
 * Intrusive pointer to a T that has ref(), deref() and a virtual destructor (see Shared).
 *
 * Since the count lives in the object, a raw pointer may be turned into a SharedPtr again at any
 * time while another SharedPtr holds it. Null is allowed.
 */
template <class T>
class SharedPtr
{
public:
    SharedPtr() = default;
    SharedPtr(std::nullptr_t) {}
    SharedPtr(T* object) : m_object(object) { retain(); }
    SharedPtr(const SharedPtr& other) : m_object(other.m_object) { retain(); }
    SharedPtr(SharedPtr&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    SharedPtr(const SharedPtr<U>& other) : m_object(other.get())
    {
        retain();
    }
    ~SharedPtr() { release(); }

    SharedPtr& operator=(SharedPtr other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }

    T* get() const { return m_object; }
    T* operator->() const { return m_object; }
    T& operator*() const { return *m_object; }
    explicit operator bool() const { return m_object != nullptr; }

    void reset() { SharedPtr().swap(*this); }
    void swap(SharedPtr& other) noexcept { std::swap(m_object, other.m_object); }

    template <class U>
    SharedPtr<U> dynamicCast() const
    {
        return SharedPtr<U>(dynamic_cast<U*>(m_object));
    }

    friend bool operator==(const SharedPtr& a, const SharedPtr& b) { return a.m_object == b.m_object; }
    friend bool operator!=(const SharedPtr& a, const SharedPtr& b) { return a.m_object != b.m_object; }

private:
    void retain() const
    {
        if (m_object)
            m_object->ref();
    }
    void release()
    {
        if (m_object && m_object->deref())
            delete m_object;
    }

    T* m_object = nullptr;
};

} // namespace Torvix
