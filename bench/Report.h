#ifndef MORVANE_BENCH_REPORT_H_
#define MORVANE_BENCH_REPORT_H_

#include <string>

namespace bench {

// Writes the table and the machine that it was measured on, as a Markdown page. False when the file
// cannot be written.
bool writeReport(const std::string& path);

}  // namespace bench

#endif  // MORVANE_BENCH_REPORT_H_
