// SPDX-License-Identifier: MIT
#include "virtual_cameras/rig/rig_names.h"

#include <utility>

#include "virtual_cameras/rig/built_in_rigs.h"
#include "virtual_cameras/rig/near_name.h"
#include "virtual_cameras/rig/rig_parser.h"

namespace virtual_cameras {

const Rig& standardRig() {
    // Read once; a reset puts it in again for every test.
    static const Rig& instance = *new Rig(std::get<Rig>(rigByName("standard")));
    return instance;
}

std::variant<Rig, std::string> rigByName(std::string_view name) {
    const std::size_t colon = name.find(':');
    const auto toml = builtInRig(name.substr(0, colon));
    if (!toml) {
        return "1:1: there is no built-in rig \"" + std::string(name) + "\"";
    }
    auto rig = rigByText(*toml);
    if (colon == std::string_view::npos || !std::holds_alternative<Rig>(rig)) {
        return rig;
    }
    const SceneKind* const scene = sceneCalled(name.substr(colon + 1));
    if (scene == nullptr) {
        return "1:" + std::to_string(colon + 2) + ": there is no scene \"" +
               std::string(name.substr(colon + 1)) + "\"";
    }
    if (scene->showsPictures) {
        return "1:" + std::to_string(colon + 2) + ": scene \"" + std::string(scene->name) +
               "\" needs a rig file that names its pictures";
    }
    for (RigCamera& camera : std::get<Rig>(rig).cameras) {
        camera.scene.kind = scene;
    }
    return rig;
}

bool isBuiltInRig(std::string_view name) {
    return builtInRig(name.substr(0, name.find(':'))).has_value();
}

std::string builtInRigsHint(std::string_view name) {
    const std::vector<std::string_view> names = builtInRigNames();
    std::string text = meantText(name, names);
    std::string_view separator = text.empty() ? "; built in are " : " Built in are ";
    for (const std::string_view each : names) {
        text.append(separator).append(each);
        separator = ", ";
    }
    return text;
}

std::variant<Rig, std::string> rigByText(std::string_view toml, const std::string& folder) {
    auto parsed = parseRig(toml, folder);
    if (const auto* error = std::get_if<RigError>(&parsed)) {
        return errorText(*error);
    }
    return std::get<Rig>(std::move(parsed));
}

}  // namespace virtual_cameras
