// A number for each pair of genomes.

#ifndef PALVOR_KIT_ANSWERS_GENOME_MATRIX_H_
#define PALVOR_KIT_ANSWERS_GENOME_MATRIX_H_

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kit {

template <typename Number>
class GenomeMatrix {
 public:
  explicit GenomeMatrix(uint32_t genomes)
      : genomes_(genomes), numbers_(size_t{genomes} * genomes) {}

  uint32_t genomes() const { return genomes_; }

  Number& operator()(uint32_t a, uint32_t b) {
    return numbers_[size_t{a} * genomes_ + b];
  }
  const Number& operator()(uint32_t a, uint32_t b) const {
    return numbers_[size_t{a} * genomes_ + b];
  }

  // Adds one of as many genomes.
  void add(const GenomeMatrix& other) {
    for (size_t i = 0; i < numbers_.size(); i++) {
      numbers_[i] += other.numbers_[i];
    }
  }

 private:
  uint32_t genomes_;
  std::vector<Number> numbers_;
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_GENOME_MATRIX_H_
