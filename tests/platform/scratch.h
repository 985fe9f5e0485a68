// A folder for one test, gone afterwards, and what tests put into it.
#pragma once

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace corvane::tests {

class Scratch {
  public:
    Scratch() {
        std::string pattern = (std::filesystem::temp_directory_path() / "wendrel-test-XXXXXX").string();
        folder_ = ::mkdtemp(pattern.data());
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    ~Scratch() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    std::string path(const std::string& name = {}) const {
        return name.empty() ? folder_ : folder_ + "/" + name;
    }
    std::string write(const std::string& name, const std::string& text) const {
        std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
        std::ofstream(path(name)) << text;
        return path(name);
    }
    std::string program(const std::string& name, const std::string& text) const {
        write(name, "#!/bin/sh\n" + text);
        std::filesystem::permissions(path(name), std::filesystem::perms::owner_all);
        return path(name);
    }
    std::string read(const std::string& name) const {
        std::ifstream file(path(name));
        return {std::istreambuf_iterator<char>(file), {}};
    }

  private:
    std::string folder_;
};

class Stopwatch {
  public:
    long ms() const {
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                     start_)
            .count();
    }

  private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

} // namespace corvane::tests
