// Guarded: the border between code that throws and interfaces that don't.
#pragma once

#include <new>
#include <stdexcept>

#include "platform/component.h"

namespace Hesperon::specifics {

// Runs a call and turns what it throws into a result: memory running out into
// E_OUTOFMEMORY, std::invalid_argument (a file that can't be read) into
// E_INVALIDARG, anything else into E_FAIL.
template <class Call>
HRESULT Guarded(Call&& call) noexcept
{
    try {
        return call();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (const std::invalid_argument&) {
        return E_INVALIDARG;
    } catch (...) {
        return E_FAIL;
    }
}

} // namespace Hesperon::specifics
