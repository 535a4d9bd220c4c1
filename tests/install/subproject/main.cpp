// A program that has the component's words for things of its own: the header must not bring them.
struct HRESULT;
struct VARIANT;
struct GUID;
struct IUnknown;
class Variant;
class Bstr;
class com_ptr;
enum BYTE
{
    byte
};
using LONG = char;
using DATE = char*;
int SysFreeString = 0;

#include <iostream>
#include <tabulex.hpp>

int main(int, char** argv)
{
    for (const auto& row : tabulex::open(argv[1]).rows())
        std::cout << row.close() << '\n';
    return SysFreeString + byte;
}
