#pragma once

// Thin access to the Firebird OO API entry points, shared by the data layer.
// Not part of the public interface of core/.

#include <firebird/Interface.h>

#include "dberror.h"

namespace tv::fb {

Firebird::IMaster* master();
Firebird::IUtil* util();
Firebird::IProvider* provider();

// A status wrapper that turns failures into DatabaseError at the call site:
//   Status st; att->detach(st.w()); st.check();
// ThrowStatusWrapper throws FbException; guard() converts it.
class Status {
public:
    Status();
    ~Status();
    Status(const Status&) = delete;
    Status& operator=(const Status&) = delete;
    Firebird::ThrowStatusWrapper* operator&() { return &mWrapper; }

private:
    Firebird::ThrowStatusWrapper mWrapper;
};

// Runs f, converting Firebird's exception into DatabaseError.
template <typename F>
auto guard(F&& f) -> decltype(f())
{
    try {
        return f();
    } catch (const Firebird::FbException& e) {
        throw DatabaseError::fromStatus(e.getStatus());
    }
}

// Owns one reference to a Firebird interface (statement, result set, blob,
// message metadata, builder) and releases it on every path out of a scope.
// Releasing an unclosed result set closes it; an unclosed new blob is
// cancelled, which is what a failed write wants.
template <typename T>
class Ref {
public:
    Ref() = default;
    explicit Ref(T* p) : mP(p) {}
    ~Ref() { reset(); }
    Ref(const Ref&) = delete;
    Ref& operator=(const Ref&) = delete;
    Ref(Ref&& o) noexcept : mP(o.mP) { o.mP = nullptr; }
    Ref& operator=(Ref&& o) noexcept
    {
        if (this != &o) {
            reset();
            mP = o.mP;
            o.mP = nullptr;
        }
        return *this;
    }
    void reset(T* p = nullptr)
    {
        if (mP)
            mP->release();
        mP = p;
    }
    // Gives up ownership, e.g. after close() released the interface itself.
    T* take()
    {
        T* p = mP;
        mP = nullptr;
        return p;
    }
    T* get() const { return mP; }
    T* operator->() const { return mP; }
    explicit operator bool() const { return mP != nullptr; }

private:
    T* mP = nullptr;
};

} // namespace tv::fb
