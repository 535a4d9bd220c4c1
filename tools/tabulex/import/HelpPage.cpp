// The page is a text of lines, drawn in a box as wide as the longest of them.

#include "tools/tabulex/import/HelpPage.h"

#include <algorithm>
#include <sstream>

#include "tools/tabulex/import/terminal/ImportTexts.h"
#include "tools/tabulex/text/VisibleText.h"

namespace tabulex {

namespace {

class Page final : public ILayer
{
public:
    Page()
    {
        std::istringstream text(TextOf(ImportText::Help));
        for (std::string line; std::getline(text, line);)
            m_lines.push_back(line);
    }

    void Draw(Canvas& canvas) override
    {
        const Size size = canvas.GetSize();
        int nWidth = 0;
        for (const std::string& line : m_lines)
            nWidth = std::max(nWidth, CellsOf(line));
        const int nColumns = std::min(nWidth + 4, size.nColumns);
        const int nRows = std::min(static_cast<int>(m_lines.size()) + 2, size.nRows);
        const Rect box{(size.nColumns - nColumns) / 2, (size.nRows - nRows) / 2, nColumns, nRows};
        canvas.Box(box, TextOf(ImportText::HelpKey));
        for (int n = 0; n < nRows - 2; ++n)
            canvas.Put(box.nColumn + 2, box.nRow + 1 + n, m_lines[static_cast<std::size_t>(n)],
                       Look::Normal, nColumns - 4);
        canvas.cursor.reset();
    }

private:
    std::vector<std::string> m_lines;
};

} // namespace

void ShowHelpPage(Desk& desk)
{
    Page page;
    const Layered layered(desk, page);
    while (desk.Next().key == Key::Resize) {
    }
}

} // namespace tabulex
