// The engine finds the layout of clean lines by itself, but a moment that can't be read among the
// lines that it looks at would lead it astray. So its columns are named as well where the recipe
// knows them.

#include "tools/tabulex/clean/CleanFile.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "intake/CellCutter.h"
#include "intake/Headings.h"
#include "tools/tabulex/clean/FileLines.h"
#include "tools/tabulex/input/UnchangedFile.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/InputStream.h"

namespace tabulex {

namespace {

constexpr std::size_t kReadBytes = 1 << 18;
constexpr LONG kSemicolon = 1 << 3; // as in IRecordParser::FieldDividers
constexpr const char* kCleanDate = "yyyy-mm-dd";
constexpr const char* kCleanTime = "hh:mm:ss.fff";

class SpillStore : public intake::Store
{
public:
    SpillStore() : m_bytes(m_file.Path()) {}

    void Append(std::string_view bytes) override { m_file.WriteUnlessInterrupted(bytes); }
    void ReadAt(std::uint64_t nOffset, std::span<char> buffer) override
    {
        if (m_bytes.ReadAt(nOffset, buffer) != buffer.size())
            throw Fault{ExitStatus::FileFault,
                        "its temporary copy can't be read again; look at the disk of TMPDIR"};
    }

private:
    SpillFile m_file;
    FileBytes m_bytes;
};

// The user's lines, by what the intake says of their places.
class UserLines : public LineSource
{
public:
    UserLines(std::string sPath, const intake::Recipe& recipe, const intake::Intake& done)
        : m_sPath(std::move(sPath)), m_recipe(recipe), m_cDivider(done.Divider()),
          m_origins(done.LineOrigins())
    {}

    ULONGLONG NumberOf(ULONGLONG nNumber) override
    {
        const std::uint64_t nOrigin = m_origins->Of(nNumber - 1);
        return nOrigin == intake::kNoOrigin ? 0 : nOrigin + 1;
    }
    std::string BytesOf(ULONGLONG nUserNumber, ULONGLONG nMost) override
    {
        if (!m_lines)
            m_lines.emplace(m_sPath);
        return m_lines->BytesOf(nUserNumber, nMost);
    }

    ULONG ColumnOf(ULONG nField) override { return intake::ColumnBehind(m_recipe, nField); }
    std::string CellOf(ULONGLONG nUserNumber, ULONG nColumn) override
    {
        std::string line = BytesOf(nUserNumber, intake::kMostLineBytes);
        const std::size_t nSize = line.size();
        line.append(intake::CellCutter::kPadding, '\0');
        intake::CellCutter cutter(m_recipe.cells.bQuotes, nColumn);
        cutter.SetDivider(m_cDivider);
        cutter.Cut(std::string_view(line).substr(0, nSize));
        return cutter.Cells().size() < nColumn ? std::string()
                                               : std::string(cutter.Cells()[nColumn - 1]);
    }

private:
    const std::string m_sPath;
    const intake::Recipe m_recipe;
    const char m_cDivider;
    const std::shared_ptr<const intake::Origins> m_origins;
    std::optional<FileLines> m_lines; // opened when they are asked for
};

std::unique_ptr<intake::Store> MakeSpillStore()
{
    return std::make_unique<SpillStore>();
}

bool IsGiven(const Settings& given, ULONG nField)
{
    return std::ranges::any_of(
        given.columns, [nField](const ColumnSetting& column) { return column.nField == nField; });
}

// A moment is written by the recipe, and a Date that is only taken stands as it was.
std::string TemplateOf(const intake::Recipe& recipe, const std::string& heading)
{
    if (!recipe.moment)
        return {};
    return heading == "Date" ? kCleanDate : heading == "Time" ? kCleanTime : "";
}

} // namespace

CleanFile::CleanFile(const InputFile& input, const intake::Recipe& recipe, Warnings& warnings)
    : m_input(input), m_recipe(recipe)
{
    if (m_recipe.IsEmpty())
        return;
    try {
        CopyUnchanged(input.Path(), [this] { Clean(); });
    } catch (const intake::RecipeFault& fault) {
        throw Fault{ExitStatus::Usage, fault.sMessage};
    }
    WarnOfCleaning(m_done, warnings);
}

CleanFile::~CleanFile() = default;

void CleanFile::Clean()
{
    auto copy = std::make_unique<SpillFile>();
    intake::Intake intake(
        m_recipe, [&copy](std::string_view text) { copy->WriteUnlessInterrupted(text); },
        MakeSpillStore);
    InputStream from(m_input.Path());
    std::vector<char> block(kReadBytes);
    while (const std::size_t nRead = from.Read(block))
        intake.Feed({block.data(), nRead});
    intake.Finish();
    m_done = intake.Account();
    m_source = std::make_unique<UserLines>(m_input.Path(), m_recipe, intake);
    m_copy = std::move(copy);
}

const std::string& CleanFile::Path() const
{
    return m_copy ? m_copy->Path() : m_input.Path();
}

Settings CleanFile::SettingsOf(const intake::Recipe& recipe, const Settings& given)
{
    Settings settings = given;
    if (recipe.IsEmpty())
        return settings;
    settings.nDividers = kSemicolon;
    if (!recipe.HasHeading())
        return settings;
    settings.header = HeaderChoice::Yes;
    ULONG nField = 0;
    for (const std::string& heading : intake::HeadingOf(recipe)) {
        const bool bKnown = intake::IsNumberHeading(heading) || intake::IsTextHeading(heading);
        if (bKnown && !IsGiven(given, nField))
            settings.columns.push_back({nField, heading, TemplateOf(recipe, heading)});
        ++nField;
    }
    return settings;
}

// The heading of the recipe is no line of the user's, and what was left out isn't in the clean
// text.
Account CleanFile::AccountOf(const Account& ofClean) const
{
    Account account = ofClean;
    if (!m_copy)
        return account;
    const ULONGLONG nGone = m_done.nLeftOut + m_done.nJoined;
    account.nLines = m_done.nLines;
    account.nBlank = m_done.nLines - (m_done.nRows + m_done.nHeading + nGone);
    account.nHeader = m_recipe.HasHeading() ? m_done.nHeading : ofClean.nHeader;
    account.nSkipped += nGone;
    return account;
}

} // namespace tabulex
