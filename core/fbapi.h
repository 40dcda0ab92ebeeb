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

} // namespace tv::fb
