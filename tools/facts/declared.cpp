// mcast6declared: prints what follows from the schemas of the tables and from the exported headers.
//
//   mcast6declared headers DIR         DIR/tables.h and DIR/tables/: accessor prototypes and layouts
//   mcast6declared bodies FILE [TABLE] the accessors' definitions, of all tables or of one
//   mcast6declared exports FILE DIR    the version script of the library whose headers are in DIR
//
// It compiles without the table modules, whose accessor headers it makes.
#include <iostream>
#include <string_view>
#include <vector>

#include "tools/facts/accessors.h"
#include "tools/facts/exports.h"
#include "tools/facts/output.h"

int main(int argumentCount, char** words) try {
    using namespace mcast6::facts;
    const std::vector<std::string_view> arguments(words + 1, words + argumentCount);
    const std::string_view kind = arguments.empty() ? "" : arguments[0];
    if (kind == "headers" && arguments.size() == 2) {
        writeAccessorHeaders(arguments[1]);
    } else if (kind == "bodies" && (arguments.size() == 2 || arguments.size() == 3)) {
        writeFile(arguments[1], accessorBodies(arguments.size() == 3 ? arguments[2] : ""));
    } else if (kind == "exports" && arguments.size() == 3) {
        writeFile(arguments[1], exportMap(arguments[2]));
    } else {
        std::cerr << "usage: mcast6declared headers DIR | bodies FILE [TABLE] | exports FILE DIR\n";
        return 2;
    }
    return 0;
} catch (const std::exception& error) {
    std::cerr << "mcast6declared: " << error.what() << "\n";
    return 1;
}
