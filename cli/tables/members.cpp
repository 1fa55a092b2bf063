#include "cli/tables/members.h"

#include "kernel/text.h"

namespace mcast6::ctl {
namespace {

std::vector<std::string> joined(std::vector<std::string> cells, const std::vector<std::string>& further) {
    cells.insert(cells.end(), further.begin(), further.end());
    return cells;
}

}  // namespace

EntryText::EntryText(const std::vector<std::string>& entryTitles, const std::vector<std::string>& memberTitles)
    : entryColumns_(entryTitles.size()),
      memberColumns_(memberTitles.size()),
      lines_(joined(entryTitles, memberTitles)) {}

void EntryText::entry(std::vector<std::string> cells) {
    ++entries_;
    cells.resize(entryColumns_ + memberColumns_);
    lines_.row(cells);
}

void EntryText::member(const std::vector<std::string>& cells) {
    ++members_;
    lines_.row(joined(std::vector<std::string>(entryColumns_), cells));
}

void EntryText::print() const {
    lines_.print();
    if (entries_ == 0) return printLine("no entries");
    printLine(counted(entries_, "entry") + (memberColumns_ > 0 ? ", " + counted(members_, "member") : ""));
}

}  // namespace mcast6::ctl
