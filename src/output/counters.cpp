#include "output/counters.h"

#include <algorithm>

#include "sources/compare.h"
#include "support/report.h"

constinit int nsuff = 0;
constinit long long nncmp = 0;
constinit long long nlcmp = 0;
constinit long long nnac = 0;
constinit long long nnrc = 0;
constinit long long nnoc = 0;
constinit int nlcp = 0;
constinit double llcp = 0;
constinit int maxPath = 0;

constinit int case3 = 0;
constinit int case4 = 0;
constinit int case6 = 0;

constinit int maxlcp = 0;
constinit int nmlcp1 = 0;
constinit int nmlcp2 = 0;
constinit int ntree = 0;

constinit double tsuff = 0;
constinit double tnlcp = 0;
constinit double tllcp = 0;
constinit double tlcmp = 0;
constinit double tncmp = 0;
constinit double tnrc = 0;
constinit double tnoc = 0;
constinit double tnac = 0;
constinit double tnp2 = 0;
constinit int tmaxPath = 0;

constinit int tstart = 0;
constinit int rstart = 0;

namespace {

template <typename Counter>
void roll(Counter& counter, double& total) {
  total += static_cast<double>(counter);
  counter = 0;
}

}  // namespace

void rollUpCounters() {
  roll(nsuff, tsuff);
  roll(nlcp, tnlcp);
  roll(llcp, tllcp);
  roll(nlcmp, tlcmp);
  roll(nncmp, tncmp);
  roll(np2, tnp2);
  roll(nnac, tnac);
  roll(nnrc, tnrc);
  roll(nnoc, tnoc);
  tmaxPath = std::max(tmaxPath, maxPath);
  maxPath = 0;
}

void reportTotals() {
  say("Merge done: %.0f, %d ST%s, tnp2=%.0f tlcmp=%.0f tncmp=%.0f "
      "tnrc=%.0f/%.0f tnac=%.0f\n",
      tsuff, ntree, ntree == 1 ? "" : "s", tnp2, tlcmp, tncmp, tnrc, tnoc,
      tnac);
  const int alcp = tnlcp > 0 ? static_cast<int>(tllcp / tnlcp) : 0;
  say("  maxp=%d tnlcp=%.0f alcp=%d maxlcp=%d nmlcp=%d/%d  tngb=%.0f\n",
      tmaxPath, tnlcp, alcp, maxlcp, nmlcp1, nmlcp2, tngb);
}
