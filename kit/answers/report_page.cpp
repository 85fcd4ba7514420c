#include "kit/answers/report_page.h"

#include "report_parts.h"

namespace kit {
namespace {

// JSON inside a script element, which "</script" and "<!--" would end.
std::string asScriptData(const Json& facts) {
  std::string text;
  for (const char c : jsonLine(facts)) {
    if (c == '<') {
      text += "\\u003c";
    } else {
      text += c;
    }
  }
  return text;
}

// Puts a text in where the page has a mark, which it must have.
void putIn(std::string& page, std::string_view mark, std::string_view text) {
  page.replace(page.find(mark), mark.size(), text);
}

}  // namespace

std::string reportPage(const Json& facts) {
  std::string page = kReportPage;
  putIn(page, "/*STYLE*/", kReportStyle);
  putIn(page, "/*SCRIPT*/", kReportScript);
  // Last, so that no mark is looked for in what comes from files.
  putIn(page, "/*FACTS*/", asScriptData(facts));
  return page;
}

std::string escapedForHtml(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      case '\'':
        escaped += "&#39;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

}  // namespace kit
