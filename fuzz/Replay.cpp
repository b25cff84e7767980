// Runs a target over its seeds and over what fuzzing has found, in builds without the fuzzer.
//
// fuzz_TARGET FOUND TARGET SEEDS
//   FOUND  folder with cases.txt (a line for each case: target, name, what it was) and, for each
//          target, a folder with the cases
//   SEEDS  folder of files

#include "FuzzTarget.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

using namespace tarnwick;

namespace {

namespace fs = std::filesystem;

std::set<fs::path> filesIn(const fs::path& folder)
{
    std::set<fs::path> files;
    if (fs::is_directory(folder))
        for (const fs::directory_entry& entry : fs::directory_iterator(folder))
            files.insert(entry.path());
    return files;
}

/// The cases that the table tells of.
std::set<fs::path> tabled(const fs::path& found, const std::string& target)
{
    std::set<fs::path> files;
    std::ifstream table(found / "cases.txt");
    for (std::string line; std::getline(table, line);) {
        std::istringstream words(line);
        std::string ofTarget, name, what;
        if (words >> ofTarget >> name >> what && ofTarget == target)
            files.insert(found / target / name);
    }
    return files;
}

void run(const fs::path& path)
{
    std::cout << path.string() << std::endl; // known before it can end the process
    std::ifstream file(path, std::ios::binary);
    require(file.is_open(), "cannot be read");
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

} // namespace

int main(int argc, char** argv)
{
    require(argc == 4, "usage: fuzz_TARGET FOUND TARGET SEEDS");
    const fs::path found = argv[1];
    std::set<fs::path> files = tabled(found, argv[2]);
    require(files == filesIn(found / argv[2]), "cases.txt and the folder of cases differ");
    const std::set<fs::path> seeds = filesIn(argv[3]);
    require(!seeds.empty(), "no seeds");
    files.insert(seeds.begin(), seeds.end());
    LLVMFuzzerTestOneInput(nullptr, 0);
    for (const fs::path& path : files)
        run(path);
    std::cout << files.size() << " files\n";
}
