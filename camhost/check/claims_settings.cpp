// SPDX-License-Identifier: MIT
// Settings by name: lists and their ends, unknown names, how names are matched, types,
// choices and attributes.
#include <algorithm>

#include "camhost/base/texts.h"
#include "camhost/check/check.h"
#include "camhost/check/claim_groups.h"
#include "camhost/settings/key_kinds.h"

namespace camhost {

namespace {

constexpr const char* noSetting = "no such setting";

const ListedNames& endingList(CCheck& check) {
    const ListedNames& list = check.listedNames();
    if (!list.end) {
        throw NotSupported{"the list of names does not end"};
    }
    return list;
}

void namesEnd(CCheck& check) {
    check.expect(check.listedNames().end.has_value(), "no end at " + std::to_string(longestList));
}

void nameBehindTheLastIsEmpty(CCheck& check) {
    check.expectAnswer(*endingList(check).end, {.result = HOST_RESULT_FAILURE, .text = ""});
}

void namesAreInOrder(CCheck& check) {
    const ListedNames& list = endingList(check);
    const auto wrong = std::is_sorted_until(list.names.begin(), list.names.end());
    check.expect(wrong == list.names.end(),
                 "\"" + (wrong == list.names.end() ? "" : *wrong) + "\" comes too late");
}

void hiddenNamesStayOut(CCheck& check) {
    for (const std::string& name : endingList(check).names) {
        check.expect(name.find('_') == name.npos && name.find("binning") == name.npos,
                     "\"" + name + "\" is listed");
    }
}

void listedNamesAreInTheFullList(CCheck& check) {
    for (const std::string& name : endingList(check).names) {
        check.expect(check.hasKey(name), "\"" + name + "\" is not");
    }
}

void numberedListEnds(CCheck& check, const std::string& prefix) {
    for (std::int32_t number = 1; number <= longestList; ++number) {
        const Answer answer = check.host().get(prefix + std::to_string(number));
        if (!answer.isDone()) {
            check.expectAnswer(answer, {}, prefix + std::to_string(number));
            return;
        }
        if (answer.text.value_or("").empty()) {
            return;
        }
    }
    check.expect(false, "no end at " + std::to_string(longestList));
}

void everyReadingHasAnAnswer(CCheck& check) {
    for (const std::string& key : check.keys()) {
        const Answer answer = check.host().get(key);
        check.expect(answer.text || answer.message, "\"" + key + "\" " + told(answer));
    }
}

void unknownIsRefused(CCheck& check, const Answer& answer) {
    check.expectAnswer(answer, {.result = HOST_RESULT_FAILURE, .said = Said::Something});
    check.expect(answer.isDone() || answer.message == "Unknown property \"no such setting\"",
                 told(answer));
}

void longNamesAreRefused(CCheck& check) {
    const std::string longKey(400, 'x');
    const Wanted refused{.result = HOST_RESULT_FAILURE, .said = Said::Something};
    check.expectAnswer(check.host().get(longKey), refused, "GetPropertyValue");
    check.expectAnswer(check.host().set(longKey, longKey), refused, "SetPropertyValue");
    check.expectAnswer(check.host().execute(longKey), refused, "ExecuteCommand");
}

void isReadAs(CCheck& check, const std::string& key, const std::string& typed) {
    const auto text = check.value(key);
    if (!text) {
        throw NotSupported{"there is no " + key};
    }
    check.expectAnswer(check.host().get(typed), {.text = *text});
}

constexpr Claim settingTable[] = {
    {"the list of names ends", namesEnd},
    {"the name behind the last is empty", nameBehindTheLastIsEmpty},
    {"names are in the order of the alphabet", namesAreInOrder},
    {"hidden names are not listed", hiddenNamesStayOut},
    {"listed names are in the full list", listedNamesAreInTheFullList},
    {"feature_1, ... end with an empty text",
     [](CCheck& check) { numberedListEnds(check, "feature_"); }},
    {"execute_1, ... end with an empty text",
     [](CCheck& check) { numberedListEnds(check, "execute_"); }},
    {"every setting has a value or a text", everyReadingHasAnAnswer},
    {"reading an unknown setting is refused",
     [](CCheck& check) { unknownIsRefused(check, check.host().get(noSetting)); }},
    {"setting an unknown setting is refused",
     [](CCheck& check) { unknownIsRefused(check, check.host().set(noSetting, "1")); }},
    {"names of 400 bytes are refused", longNamesAreRefused},
    {"the case of letters does not count",
     [](CCheck& check) { isReadAs(check, "pixelformat", upperCased("pixelformat")); }},
    {"blanks at the end do not count",
     [](CCheck& check) { isReadAs(check, "pixelformat", "pixelformat  "); }},
};

void typesAreKnown(CCheck& check) {
    for (const std::string& key : check.keys()) {
        const auto type = check.host().type(key).word.value_or(0);
        check.expect(type == HOST_PROPERTY_CHOICE || type == HOST_PROPERTY_TEXT ||
                         type == HOST_PROPERTY_EXECUTABLE,
                     "\"" + key + "\" is " + std::to_string(type));
    }
}

// Of the keys that the page says to be choices.
std::vector<std::string> choiceKeys(CCheck& check) {
    std::vector<std::string> found;
    for (const std::string& key : check.keys()) {
        const KeyKind kind = keyKind(key);
        if (kind == KeyKind::Switch || kind == KeyKind::VideoFormat) {
            found.push_back(key);
        }
    }
    if (found.empty()) {
        throw NotSupported{"there are no switches and formats"};
    }
    return found;
}

void switchesAndFormatsAreChoices(CCheck& check) {
    for (const std::string& key : choiceKeys(check)) {
        check.expectAnswer(check.host().type(key), {.word = HOST_PROPERTY_CHOICE}, key);
    }
}

struct Choices {
    std::vector<std::string> texts;
    bool hasEnd = false;
};

Choices choicesOf(CCheck& check, const std::string& key) {
    Choices choices;
    while (!choices.hasEnd && choices.texts.size() < static_cast<std::size_t>(longestList)) {
        const Answer answer =
            check.host().choice(key, static_cast<std::int32_t>(choices.texts.size()));
        choices.hasEnd = !answer.isDone();
        if (answer.isDone()) {
            choices.texts.push_back(answer.text.value_or(""));
        }
    }
    return choices;
}

void choicesEnd(CCheck& check) {
    for (const std::string& key : choiceKeys(check)) {
        check.expect(choicesOf(check, key).hasEnd, "those of \"" + key + "\" do not");
    }
}

void valuesAreAmongTheChoices(CCheck& check) {
    for (const std::string& key : choiceKeys(check)) {
        const auto text = check.value(key);
        const Choices choices = choicesOf(check, key);
        if (text && choices.hasEnd) {
            check.expect(
                std::find(choices.texts.begin(), choices.texts.end(), *text) != choices.texts.end(),
                "\"" + key + "\" is \"" + *text + "\"");
        }
    }
}

void otherSettingsHaveNoChoices(CCheck& check) {
    check.expectAnswer(check.host().choice("framerate", 0),
                       {.result = HOST_RESULT_FAILURE, .said = Said::Something});
}

void attributesAreTheSame(CCheck& check) {
    for (const char* key : {"pixelformat", noSetting}) {
        check.expectAnswer(check.host().attribute(key, 1), {.text = "No comment."}, key);
        check.expectAnswer(check.host().attribute(key, 2), {.text = "True"}, key);
        check.expectAnswer(check.host().attribute(key, 3), {.text = "True"}, key);
    }
}

void otherAttributesWriteNothing(CCheck& check) {
    for (const std::uint32_t number : {0U, 4U, 0xFFFFFFFFU}) {
        const Answer answer = check.host().attribute("pixelformat", number);
        check.expectAnswer(answer, {});
        check.expect(!answer.text, std::to_string(number) + " " + told(answer));
    }
}

constexpr Claim choiceTable[] = {
    {"types are 1, 2 or 4", typesAreKnown},
    {"switches and videoformat are choices", switchesAndFormatsAreChoices},
    {"lists of choices end", choicesEnd},
    {"values are among the choices", valuesAreAmongTheChoices},
    {"what has no choices says so", otherSettingsHaveNoChoices},
    {"attributes 1 to 3 are the same for every key", attributesAreTheSame},
    {"other attributes write nothing", otherAttributesWriteNothing},
};

}  // namespace

ClaimGroup settingClaims() {
    return {"Settings", settingTable};
}

ClaimGroup choiceClaims() {
    return {"Types, choices and attributes", choiceTable};
}

}  // namespace camhost
