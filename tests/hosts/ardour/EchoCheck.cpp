// SPDX-License-Identifier: GPL-3.0-or-later
// EchoCheck FRAMES PLAIN.wav ECHO.wav: whether the second sound file is the first one until so many frames
// after that begins to sound, and another one from exactly there on.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

/// A file's samples, of two channels, in the 32-bit floats that were asked for.
std::vector<float> samplesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    const auto chunk = bytes.find("data");
    if (chunk == std::string::npos) {
        throw std::runtime_error(path + " is no sound file");
    }
    std::uint32_t size = 0;
    std::memcpy(&size, bytes.data() + chunk + 4, sizeof size);
    std::vector<float> samples(std::min<std::size_t>(size, bytes.size() - chunk - 8) / sizeof(float));
    std::memcpy(samples.data(), bytes.data() + chunk + 8, samples.size() * sizeof(float));
    return samples;
}

std::ptrdiff_t frameOf(const std::vector<float>& samples, std::vector<float>::const_iterator sample) {
    return (sample - samples.begin()) / 2;
}

int check(std::ptrdiff_t frames, const std::vector<float>& plain, const std::vector<float>& echo) {
    const auto onset = std::ranges::find_if(plain, [](float sample) { return sample != 0.0F; });
    const auto [inPlain, inEcho] = std::ranges::mismatch(plain, echo);
    if (onset == plain.end() || inPlain == plain.end() || plain.size() != echo.size()) {
        std::cerr << "there is no note, or no difference\n";
        return 1;
    }
    const auto difference = frameOf(plain, inPlain) - frameOf(plain, onset);
    std::cout << "The note sounds from frame " << frameOf(plain, onset) << " on, the echo begins "
              << difference << " frames later.\n";
    return difference == frames ? 0 : 1;
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 4) {
        std::cerr << "Usage: EchoCheck FRAMES PLAIN.wav ECHO.wav\n";
        return 64;
    }
    try {
        return check(std::stol(arguments[1]), samplesOf(arguments[2]), samplesOf(arguments[3]));
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
