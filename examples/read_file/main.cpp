// Prints when and at what price each row of a file closes, and which lines can't be read.
#include <iostream>
#include <tabulex.hpp>

int main(int argc, char** argv)
try {
    auto rows = tabulex::open(argc > 1 ? argv[1] : "quotes.csv").rows();
    for (const auto& row : rows)
        std::cout << tabulex::to_text(row.moment()) << ' ' << row.close() << '\n';
    for (const auto& bad : rows.bad_lines())
        std::cerr << "line " << bad.line << ": " << bad.message << '\n';
} catch (const tabulex::error& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
