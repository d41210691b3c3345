#include <iostream>

#include "base/module/symbol_table.h"
#include "greeter.h"

using namespace Oxa_1_1;

int main()
{
    const Module& greeter = greeterModule();
    const unsigned int id = greeter.getResourceSymbols()["IDS_HELLO"];
    std::cout << String::loadFromResource(id, greeter) << " from " << greeter.getModuleName() << ", IDS_HELLO is " << id
              << '\n';
}
