#include "kit/prepare/input_finder.h"

namespace kit {

InputFinder::InputFinder(const PsaText& psa) {
  begins_.reserve(psa.inputs.size());
  ends_.reserve(psa.inputs.size());
  for (const InputString& input : psa.inputs) {
    begins_.push_back(static_cast<uint32_t>(input.begin));
    ends_.push_back(static_cast<uint32_t>(input.begin + input.length));
  }
  const size_t positions = kCharactersPerWord * psa.words.size();
  size_t input = 0;
  for (size_t begin = 0; begin < positions; begin += kBlock) {
    while (input + 1 < begins_.size() && begins_[input + 1] <= begin) input++;
    firstOfBlock_.push_back(static_cast<uint32_t>(input));
  }
  firstOfBlock_.push_back(static_cast<uint32_t>(begins_.size() - 1));
}

}  // namespace kit
