// The page of a report: one HTML file that needs nothing else, no network
// either. Its parts are files of their own in kit/answers/report_page, which
// the build puts into the program.

#ifndef PALVOR_KIT_ANSWERS_REPORT_PAGE_H_
#define PALVOR_KIT_ANSWERS_REPORT_PAGE_H_

#include <string>
#include <string_view>

#include "kit/json.h"

namespace kit {

// The page that shows these facts (kit/answers/report_facts.h). No text in them
// can become a part of the page's code.
std::string reportPage(const Json& facts);

// Text with the signs that mean something to HTML written as entities.
std::string escapedForHtml(std::string_view text);

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_REPORT_PAGE_H_
