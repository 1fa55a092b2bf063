// mcast6described: prints what follows from the descriptions of the table modules.
//
//   mcast6described names FILE     the names of counters and indicators, for the platform's host
//   mcast6described tables FILE    the page of all tables
#include <iostream>
#include <string_view>

#include "tools/facts/names.h"
#include "tools/facts/output.h"
#include "tools/facts/tables.h"

int main(int argumentCount, char** arguments) try {
    using namespace mcast6::facts;
    const std::string_view kind = argumentCount == 3 ? arguments[1] : "";
    if (kind == "names") {
        writeFile(arguments[2], namesHeader(modules()));
    } else if (kind == "tables") {
        writeFile(arguments[2], tablesPage(modules()));
    } else {
        std::cerr << "usage: mcast6described names FILE | tables FILE\n";
        return 2;
    }
    return 0;
} catch (const std::exception& error) {
    std::cerr << "mcast6described: " << error.what() << "\n";
    return 1;
}
