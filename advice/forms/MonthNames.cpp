// A word stands for the month whose names begin with it, if it has three letters at least. Names
// that begin alike, as juin and juillet, tell themselves apart by the fourth.
#include "advice/forms/MonthNames.h"

#include <algorithm>
#include <string>

#include "advice/headings/HeadingWords.h"

namespace tabulex::advice {

namespace {

// English, German, French, Spanish, Portuguese, Italian, Dutch, Polish, Russian, Turkish, Swedish;
// in small letters without accents, between blanks.
constexpr std::string_view kMonths[12] = {
    " january januar janvier jänner enero ene janeiro gennaio genn januari styczen stycznia sty "
    "январь "
    "января ocak ",
    " february februar fevrier fevr febrero fevereiro febbraio februari luty lutego февраль "
    "февраля "
    "subat ",
    " march marz mars marzo marco maart mrt marzec marca март марта ",
    " april avril abril abr aprile kwiecien kwietnia kwi апрель апреля nisan ",
    " may mai mayo maio maggio mag mei maj maja май мая mayis ",
    " june juni juin junio junho giugno czerwiec czerwca cze июнь июня haziran ",
    " july juli juillet juil julio julho luglio lipiec lipca июль июля temmuz ",
    " august aout agosto augustus augusti sierpien sierpnia август августа agustos ",
    " september septembre septiembre setembro settembre sett wrzesien wrzesnia сентябрь сентября "
    "eylul ",
    " october oktober octobre octubre outubro ottobre pazdziernik pazdziernika октябрь октября "
    "ekim ",
    " november novembre noviembre novembro listopad listopada ноябрь ноября kasim ",
    " december dezember decembre diciembre dezembro dicembre dec grudzien grudnia декабрь декабря "
    "aralik "};

constexpr std::string_view kWeekdays =
    " monday tuesday wednesday thursday friday saturday sunday tues thurs montag dienstag mittwoch "
    "donnerstag freitag samstag sonntag lundi mardi mercredi jeudi vendredi samedi dimanche lunes "
    "martes miercoles jueves viernes sabado domingo ";

// A name in the list that begins with the word.
bool Begins(std::string_view list, std::string_view word)
{
    return list.find(' ' + std::string(word)) != std::string_view::npos;
}

// In small letters without accents; empty for several words.
std::string PlainWord(std::string_view word)
{
    const auto tokens = HeadingTokens(word);
    std::string plain;
    for (const std::string& token : tokens)
        plain += token;
    return plain;
}

} // namespace

int MonthOf(std::string_view word)
{
    const std::string plain = PlainWord(word);
    if (plain.size() < 3)
        return 0;
    for (std::size_t i = 0; i < std::size(kMonths); ++i)
        if (Begins(kMonths[i], plain))
            return static_cast<int>(i) + 1;
    return 0;
}

bool IsWeekday(std::string_view word)
{
    const std::string plain = PlainWord(word);
    return plain.size() >= 2 && Begins(kWeekdays, plain);
}

} // namespace tabulex::advice
