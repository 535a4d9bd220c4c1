// Multipliers: what prices and volumes are scaled by, taken out of the component for a run.
//
// The component scales in binary numbers, which isn't exact, and cuts fractions of whole numbers
// without a word. While this lives its multipliers are at "1", and whoever takes the records
// scales them.
#pragma once

#include <string>

#include "tools/tabulex/host/Host.h"

namespace tabulex {

class Multipliers
{
public:
    // The host must outlive this.
    explicit Multipliers(const Host& host);
    ~Multipliers();
    Multipliers(const Multipliers&) = delete;
    Multipliers& operator=(const Multipliers&) = delete;

    // By which power of ten the values of a type are scaled; 0 for none.
    int ExponentOf(unsigned uiType) const;
    // Name of the volumes' multiplier.
    const std::string& VolumeName() const { return m_sVolume; }

private:
    std::string Exchange(HRESULT (STDMETHODCALLTYPE IRecordParser::*get)(IDispatch**),
                         const std::string& name) const;

    const Host& m_host;
    std::string m_sPrice; // names
    std::string m_sVolume;
};

} // namespace tabulex
