// SPDX-License-Identifier: MIT
#include "tests/visits/visited_camera.h"

#include <cstddef>
#include <regex>
#include <stdexcept>
#include <string_view>

#include "virtual_cameras/rig/built_in_rigs.h"

namespace visits {

namespace {

constexpr std::string_view cameraHeader = "\n[[camera]]\n";

constexpr std::string_view neighbour =
    "rig = 1\n[[camera]]\nname = \"Neighbour\"\nserial = \"E1\"\n"
    "formats = [\"Y800 (8x4)\"]\nproperties = false\n";

std::string descriptionOf(const VisitedCamera& camera) {
    const auto rig = virtual_cameras::builtInRig(camera.rig);
    if (!rig) {
        throw std::logic_error("there is no such built-in rig");
    }
    std::size_t start = rig->find(cameraHeader);
    for (std::uint32_t i = 0; i < camera.position && start != std::string_view::npos; ++i) {
        start = rig->find(cameraHeader, start + 1);
    }
    if (start == std::string_view::npos) {
        throw std::logic_error("the rig has no camera at this position");
    }
    return std::string(rig->substr(start, rig->find(cameraHeader, start + 1) - start));
}

std::string smallSide(const std::string& side) {
    constexpr int scale = 40;
    const int pixels = std::stoi(side);
    return std::to_string(pixels < scale ? pixels : (pixels / scale) | (pixels % 2));
}

std::string withSmallPictures(const std::string& description) {
    const std::regex size(R"(\((\d+)x(\d+)\))");
    std::string result;
    auto rest = description.cbegin();
    for (std::sregex_iterator found(description.begin(), description.end(), size), end;
         found != end; ++found) {
        result.append(rest, description.cbegin() + found->position());
        result += "(" + smallSide((*found)[1]) + "x" + smallSide((*found)[2]) + ")";
        rest = description.cbegin() + found->position() + found->length();
    }
    return result.append(rest, description.cend());
}

}  // namespace

void PrintTo(const VisitedCamera& camera, std::ostream* out) {
    *out << camera.name;
}

const std::vector<VisitedCamera>& visitedCameras() {
    static const std::vector<VisitedCamera> cameras = {
        {"standard", 0, "StandardMono23"},
        {"standard", 1, "StandardColour5"},
        {"standard", 2, "StandardColour1"},
        {"standard", 3, "StandardQrm52"},
        {"standard", 4, "StandardGrabber"},
        {"failing-open", 0, "FailingOpenBroken"},
        {"failing-open", 1, "FailingOpenMono"},
        {"throwing", 0, "ThrowingBroken", "The video capture device could not be initialised."},
        {"throwing", 1, "ThrowingMono"},
        {"odd", 0, "OddMono"},
        {"odd", 1, "OddColour"},
        {"odd", 2, "OddRaw"},
        {"no-properties", 0, "NoProperties"},
        {"bare", 0, "BareMissing"},
        {"bare", 1, "BareEmpty"},
        {"bare", 2, "BareNoRates"},
    };
    return cameras;
}

std::string idOf(const VisitedCamera& camera) {
    const std::string description = descriptionOf(camera);
    std::smatch found;
    if (std::regex_search(description, found, std::regex("\nserial = \"([^\"]*)\"")) ||
        std::regex_search(description, found, std::regex("\nname = \"([^\"]*)\""))) {
        return found[1];
    }
    throw std::logic_error("the camera has no name");
}

std::string rigOf(const VisitedCamera& camera) {
    return std::string(neighbour) + withSmallPictures(descriptionOf(camera));
}

}  // namespace visits
