#include "tests/values/Heard.h"

#include "src/values/XHMTLBaseImpl.h"
#include "tests/parsing/FieldText.h"

namespace {

class Listener final : public Hesperon::specifics::CXHMTLBaseImpl
{
public:
    std::string m_sHeard;

private:
    void OnStartElement(string_view_t sName) override { m_sHeard += "+" + Shown(sName) + " "; }
    void OnEndElement(string_view_t sName) override { m_sHeard += "-" + Shown(sName) + " "; }
    void OnCharacters(string_view_t sText) override { m_sHeard += "'" + Shown(sText) + "' "; }
};

} // namespace

std::string Heard(string_view_t sDocument)
{
    Listener listener;
    const bool bRead = listener.Scan(sDocument);
    return listener.m_sHeard + (bRead ? "ok" : "broken");
}
