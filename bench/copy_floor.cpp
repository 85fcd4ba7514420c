// The floor under a merge: reads files whole, block by block, and writes as
// many bytes as a merge of them would.
//
// usage: copy_floor <output> <output bytes> <input file>...

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

int main(int argc, char** argv) {
  if (argc < 4) return 2;
  std::vector<char> buffer(16 << 20);
  long long left = std::atoll(argv[2]);
  const int output = open(argv[1], O_WRONLY | O_CREAT | O_TRUNC, 0644);
  if (output < 0) return 1;
  for (int i = 3; i < argc; i++) {
    const int input = open(argv[i], O_RDONLY);
    if (input < 0) return 1;
    while (read(input, buffer.data(), buffer.size()) > 0) {
    }
    close(input);
  }
  while (left > 0) {
    const auto piece = std::min<long long>(left, 4 << 20);
    if (write(output, buffer.data(), static_cast<size_t>(piece)) != piece) {
      return 1;
    }
    left -= piece;
  }
  return close(output) == 0 ? 0 : 1;
}
