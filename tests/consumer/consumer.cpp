#include <iostream>
#include <map>

#include "base/string/oxa_string.h"

using namespace Oxa_1_1;

int main()
{
    String name(L"scan009");
    name.incrementIndex();
    std::map<String, double, StringLess2> heights{{name, 12.5}};

    String line = name + OXA_TEXT(": ");
    line << heights.find(OXA_TEXT("SCAN010"))->second << OXA_TEXT(' ') << String::NIL.isNil();
    std::cout << line << '\n';
}
