#pragma once

// The purchase-order corpus the benchmarks share. It is generated on first use by
// shared/bench/gen_corpus.py into a temporary directory (QVXML_BENCH_MB sets its size, 20 MB
// by default) and never kept.

#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace bench {

inline bool IsDirectory(const std::string& path) {
    struct stat info;
    return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

inline std::string SharedDir() {
    if (const char* fromEnv = std::getenv("QVXML_SHARED_DIR"))
        return fromEnv;
    if (IsDirectory("/work/shared"))
        return "/work/shared";
    // <repo>/bench/BenchCorpus.h -> <repo>/../shared
    std::string repo = __FILE__;
    repo = repo.substr(0, repo.rfind('/'));
    repo = repo.substr(0, repo.rfind('/'));
    return repo + "/../shared";
}

inline std::vector<unsigned char> ReadFile(const std::string& path) {
    std::vector<unsigned char> bytes;
    FILE* file = std::fopen(path.c_str(), "rb");
    if (!file)
        return bytes;
    unsigned char chunk[1 << 16];
    size_t n;
    while ((n = std::fread(chunk, 1, sizeof chunk, file)) > 0)
        bytes.insert(bytes.end(), chunk, chunk + n);
    std::fclose(file);
    return bytes;
}

inline std::vector<unsigned char> GenerateCorpus() {
    char pattern[] = "/tmp/qvxml-bench-XXXXXX";
    if (!mkdtemp(pattern))
        throw std::runtime_error("cannot create a temporary directory");
    const std::string dir = pattern;
    const char* megabytes = std::getenv("QVXML_BENCH_MB");
    const std::string command = "python3 '" + SharedDir() + "/bench/gen_corpus.py' '" + dir + "' "
                                + (megabytes ? megabytes : "20") + " > /dev/null";
    const int status = std::system(command.c_str());
    std::vector<unsigned char> xml = ReadFile(dir + "/orders.xml");
    std::system(("rm -rf '" + dir + "'").c_str());
    if (status != 0 || xml.empty())
        throw std::runtime_error("corpus generation failed: " + command);
    return xml;
}

inline const std::vector<unsigned char>& Corpus() {
    static const std::vector<unsigned char> corpus = GenerateCorpus();
    return corpus;
}

// LoadXmlStream takes a non-const buffer but copies it.
inline unsigned char* CorpusData() {
    return const_cast<unsigned char*>(Corpus().data());
}

inline unsigned long CorpusSize() {
    return static_cast<unsigned long>(Corpus().size());
}

// Heap bytes in use, mmap'd blocks included (large buffers live there).
inline size_t HeapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

} // namespace bench
