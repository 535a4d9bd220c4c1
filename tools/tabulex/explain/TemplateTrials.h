// TemplateTrials: what the component's templates make of a text.
//
// A template is tried on a column, and columns come from a file; so this has a file of its own
// with a single column, and a parser on it. The host whose templates are tried isn't touched.
// Used by one thread.
#pragma once

#include <string>
#include <vector>

#include "tools/tabulex/host/Host.h"
#include "tools/tabulex/output/TemporaryFile.h"

namespace tabulex {

// A template over the texts of a column.
struct TemplateFit
{
    std::string sTemplate;
    std::size_t nRead = 0;           // texts that it reads
    std::size_t nFirstFailure = ~0U; // index of the first text that it doesn't read
};

class TemplateTrials
{
public:
    // Throws Fault where the file of its own can't be made. The host must outlive this.
    explicit TemplateTrials(const Host& host);

    // The host's templates of dates or times, in the order in which they are tried.
    std::vector<std::string> TemplatesOf(unsigned uiType) const;
    // Whether a template reads a text as a value of a type. Types other than Date and Time have
    // one template, and the argument doesn't count.
    bool Reads(unsigned uiType, const std::string& sTemplate, const std::string& text);
    // Each template over all texts, the one that reads most first.
    std::vector<TemplateFit> FitsOf(unsigned uiType, const std::vector<std::string>& texts);
    TemplateFit FitOf(unsigned uiType, const std::string& sTemplate,
                      const std::vector<std::string>& texts);

private:
    const Host& m_asked;
    TemporaryFile m_file; // outlives who holds it open
    Host m_host;
    unsigned m_uiType = kNoType;
    std::string m_sTemplate;
};

} // namespace tabulex
