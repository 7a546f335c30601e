// SPDX-License-Identifier: MIT
#include "virtual_cameras/rig/rig_parser.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "virtual_cameras/files/files.h"
#include "virtual_cameras/rig/near_name.h"
#include "virtual_cameras/rig/rig_events.h"
#include "virtual_cameras/rig/rig_items.h"
#include "virtual_cameras/rig/rig_text.h"
#include "virtual_cameras/rig/strict_table.h"

namespace virtual_cameras {

namespace {

constexpr std::int32_t longestSide = 8192;

template <class Value>
struct Named {
    std::string_view name;
    Value value;
};

constexpr std::array<Named<BayerOrder>, 4> bayerOrders = {{{"GBRG", BayerOrder::GBRG},
                                                           {"GRBG", BayerOrder::GRBG},
                                                           {"BGGR", BayerOrder::BGGR},
                                                           {"RGGB", BayerOrder::RGGB}}};
constexpr std::array<Named<OpenBehaviour>, 3> openBehaviours = {
    {{"succeed", OpenBehaviour::succeeds},
     {"fail", OpenBehaviour::fails},
     {"throw", OpenBehaviour::throws}}};

constexpr std::array<Named<PictureFit>, 2> pictureFits = {
    {{"scale", PictureFit::scale}, {"crop", PictureFit::crop}}};

// The entry of that name, in letters of any case, among `choices`.
template <class Choices>
const auto& chosen(const Choices& choices, const toml::node& node, std::string_view what) {
    const std::string text = textOf(node, what);
    std::string all;
    std::vector<std::string_view> names;
    for (const auto& choice : choices) {
        if (sameIgnoringCase(choice.name, text)) {
            return choice;
        }
        all += (all.empty() ? "" : ", ") + std::string(choice.name);
        names.emplace_back(choice.name);
    }
    failAt(node.source(), std::string(what) + " must be one of: " + all + meantText(text, names));
}

// Reads "(WIDTHxHEIGHT)" from the end of a format's name.
bool readSize(std::string_view name, RigFormat& format) {
    const std::size_t open = name.rfind('(');
    if (open == std::string_view::npos || name.back() != ')') {
        return false;
    }
    const char* last = name.data() + name.size() - 1;
    const auto width = std::from_chars(name.data() + open + 1, last, format.width);
    if (width.ec != std::errc() || width.ptr == last || *width.ptr != 'x') {
        return false;
    }
    const auto height = std::from_chars(width.ptr + 1, last, format.height);
    return height.ec == std::errc() && height.ptr == last;
}

std::vector<double> readRates(const toml::node& node) {
    std::vector<double> rates;
    for (const toml::node& rate : arrayOf(node, "framerates")) {
        rates.push_back(numberOf(rate, "a frame rate"));
        if (!(rates.back() > 0.0) || !std::isfinite(rates.back())) {
            failAt(rate.source(), "a frame rate must be above 0");
        }
    }
    return rates;
}

RigFormat readFormat(const toml::node& node) {
    RigFormat format;
    bool sized = false;
    if (node.is_table()) {
        CStrictTable table(node, "format");
        format.name = table.neededText("name");
        format.text = table.text("text", format.name);
        sized = readSize(format.name, format);
        if (table.find("width") != nullptr || table.find("height") != nullptr) {
            format.width = table.neededInteger("width");
            format.height = table.neededInteger("height");
            sized = true;
        }
        if (const toml::node* rates = table.find("framerates")) {
            format.frameRates = readRates(*rates);
        }
        table.finish();
    } else {
        format.name = textOf(node, "a format");
        format.text = format.name;
        sized = readSize(format.name, format);
    }
    if (!sized) {
        failAt(node.source(), "a format ends in its size, such as \"Y800 (640x480)\"");
    }
    if (format.width < 1 || format.height < 1 || format.width > longestSide ||
        format.height > longestSide) {
        failAt(node.source(), "width and height must be within 1 and 8192");
    }
    return format;
}

template <class Entry, class Read>
std::optional<std::vector<Entry>> readList(const toml::node* node, std::string_view what,
                                           Read&& read) {
    if (node == nullptr) {
        return std::nullopt;
    }
    std::vector<Entry> list;
    for (const toml::node& entry : arrayOf(*node, what)) {
        list.push_back(read(entry));
    }
    return list;
}

RigNorm readNorm(const toml::node& node) {
    CStrictTable table(node, "norm");
    RigNorm norm;
    norm.name = table.neededText("name");
    norm.formats = readList<RigFormat>(table.find("formats"), "formats", readFormat);
    table.finish();
    return norm;
}

RigChannel readChannel(const toml::node& node) {
    if (!node.is_table()) {
        const std::string name = textOf(node, "a channel");
        return {name, name};
    }
    CStrictTable table(node, "channel");
    RigChannel channel;
    channel.name = table.neededText("name");
    channel.text = table.text("text", channel.name);
    table.finish();
    return channel;
}

// The pictures are read here, so that what is wrong with them is told with its place.
void readPictures(CStrictTable& table, RigScene& scene, const std::string& folder) {
    const toml::node* path = table.find("path");
    if (path == nullptr) {
        failAt(table.place(), "scene \"" + std::string(scene.kind->name) + "\" needs \"path\"");
    }
    const std::string text = textOf(*path, "path");
    auto film = loadFilm(seenFrom(folder, text));
    if (const auto* wrong = std::get_if<std::string>(&film)) {
        failAt(path->source(), '"' + text + "\" " + *wrong);
    }
    scene.settings.film = std::get<std::shared_ptr<const Film>>(film);
    if (const toml::node* fit = table.find("fit")) {
        scene.settings.fit = chosen(pictureFits, *fit, "fit").value;
    }
}

RigScene readScene(const toml::node& node, const std::string& folder) {
    RigScene scene;
    if (!node.is_table()) {
        scene.kind = &chosen(sceneKinds(), node, "scene");
        if (scene.kind->showsPictures) {
            failAt(node.source(), "scene \"" + std::string(scene.kind->name) +
                                      "\" needs a table with \"pattern\" and \"path\"");
        }
        return scene;
    }
    CStrictTable table(node, "scene");
    if (const toml::node* pattern = table.find("pattern")) {
        scene.kind = &chosen(sceneKinds(), *pattern, "pattern");
    }
    const std::int64_t seed = table.integer("seed", 1);
    const std::int64_t value = table.integer("value", 128);
    if (seed < 0 || seed > std::numeric_limits<std::uint32_t>::max() || value < 0 || value > 255) {
        failAt(node.source(), "seed must be a 32-bit number, and value within 0 and 255");
    }
    scene.settings.seed = static_cast<std::uint32_t>(seed);
    scene.settings.value = static_cast<std::uint8_t>(value);
    if (scene.kind->showsPictures) {
        readPictures(table, scene, folder);
    }
    table.finish();
    return scene;
}

bool onlyGrey(const std::optional<std::vector<RigFormat>>& formats) {
    return !formats || std::all_of(formats->begin(), formats->end(), [](const RigFormat& format) {
        return format.text.rfind("Y800", 0) == 0;
    });
}

bool looksColoured(const RigCamera& camera) {
    const bool greyNorms =
        !camera.norms || std::all_of(camera.norms->begin(), camera.norms->end(),
                                     [](const RigNorm& norm) { return onlyGrey(norm.formats); });
    return !onlyGrey(camera.formats) || !greyNorms;
}

template <class Entry>
void checkCurrent(CStrictTable& table, std::string_view key, const std::string& current,
                  const std::optional<std::vector<Entry>>& list) {
    std::string offered;
    for (const Entry& entry : list.value_or(std::vector<Entry>{})) {
        if (entry.name == current) {
            return;
        }
        offered += (offered.empty() ? "\"" : ", \"") + entry.name + "\"";
    }
    if (!current.empty()) {
        failAt(table.find(key)->source(),
               std::string(key) + " \"" + current + "\" is not offered; " +
                   (offered.empty() ? "there are none" : "there are: " + offered));
    }
}

// What a camera needs to know of the rig that it belongs to.
struct RigPlace {
    const std::string& folder;  // of relative paths
    std::size_t cameras;
};

void readPicture(CStrictTable& table, RigCamera& camera, const RigPlace& rig) {
    camera.formats = readList<RigFormat>(table.find("formats"), "formats", readFormat);
    camera.format = table.text("format", "");
    camera.norms = readList<RigNorm>(table.find("norm"), "norm", readNorm);
    camera.norm = table.text("current_norm", "");
    camera.channels = readList<RigChannel>(table.find("channels"), "channels", readChannel);
    camera.channel = table.text("channel", "");
    if (camera.norms && !camera.norms->empty() && camera.formats) {
        failAt(table.place(), "with norms the formats belong to each norm");
    }
    checkCurrent(table, "format", camera.format, camera.formats);
    checkCurrent(table, "current_norm", camera.norm, camera.norms);
    checkCurrent(table, "channel", camera.channel, camera.channels);
    if (const toml::node* rates = table.find("framerates")) {
        camera.frameRates = readRates(*rates);
    }
    camera.frameRate = table.number("framerate", camera.frameRate);
    if (!(camera.frameRate > 0.0) || !std::isfinite(camera.frameRate)) {
        failAt(table.place(), "framerate must be above 0");
    }
    camera.colour = table.flag("colour", looksColoured(camera));
    if (const toml::node* bayer = table.find("bayer")) {
        camera.bayer = chosen(bayerOrders, *bayer, "bayer").value;
    }
    if (const toml::node* scene = table.find("scene")) {
        camera.scene = readScene(*scene, rig.folder);
    }
}

RigCamera readCamera(const toml::node& node, const RigPlace& rig) {
    CStrictTable table(node, "camera");
    RigCamera camera;
    camera.name = table.neededText("name");
    camera.model = table.text("model", camera.name);
    if (const toml::node* serial = table.find("serial")) {
        camera.serial = serialOf(*serial);
    }
    readPicture(table, camera, rig);
    camera.properties = table.flag("properties", true);
    if (const toml::node* items = table.find("item")) {
        camera.items = readItems(*items);
    }
    if (const toml::node* open = table.find("open")) {
        camera.open = chosen(openBehaviours, *open, "open").value;
    }
    camera.openText = table.text("open_text", "The device does not answer.");
    camera.exclusive = table.flag("exclusive", false);
    if (const toml::node* events = table.find("event")) {
        camera.events = readEvents(*events, camera, rig.cameras);
    }
    table.finish();
    return camera;
}

// The camera's own, and those with which it comes back.
std::vector<std::string> idsOf(const RigCamera& camera) {
    std::vector<std::string> ids = {cameraId(camera)};
    for (const RigEvent& event : camera.events) {
        const auto* unplug = std::get_if<RigUnplug>(&event.action);
        const auto* plug = unplug != nullptr ? &unplug->back : std::get_if<RigPlug>(&event.action);
        if (plug != nullptr && plug->serial) {
            RigCamera other;
            other.serial = plug->serial;
            ids.push_back(cameraId(other));
        }
    }
    return ids;
}

void checkIds(const Rig& rig, const toml::array& cameras) {
    std::vector<std::string> taken;
    for (std::size_t i = 0; i < rig.cameras.size(); ++i) {
        const std::vector<std::string> ids = idsOf(rig.cameras[i]);
        for (const std::string& id : ids) {
            if (std::find(taken.begin(), taken.end(), id) != taken.end()) {
                failAt(cameras[i].source(), "two cameras are called \"" + id + "\"");
            }
        }
        taken.insert(taken.end(), ids.begin(), ids.end());
    }
}

Rig readRig(const toml::table& root, const std::string& folder) {
    CStrictTable table(root, "rig");
    const std::int64_t version = table.integer("rig", 1);
    if (version != 1) {
        failAt(table.find("rig")->source(), "only rig format 1 is known");
    }
    Rig rig;
    if (const toml::node* cameras = table.find("camera")) {
        const toml::array& list = arrayOf(*cameras, "camera");
        for (const toml::node& camera : list) {
            rig.cameras.push_back(readCamera(camera, {folder, list.size()}));
        }
        checkIds(rig, list);
    }
    table.finish();
    return rig;
}

}  // namespace

std::string errorText(const RigError& error) {
    return std::to_string(error.line) + ":" + std::to_string(error.column) + ": " + error.message;
}

std::variant<Rig, RigError> parseRig(std::string_view toml, const std::string& folder) {
    try {
        requireReadable(toml);
        return readRig(toml::parse(toml), folder);
    } catch (const toml::parse_error& error) {
        const toml::source_position place = error.source().begin;
        return RigError{place.line, place.column, std::string(error.description())};
    } catch (const RigFailure& failure) {
        return failure.error;
    }
}

}  // namespace virtual_cameras
