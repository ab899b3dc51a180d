#pragma once
// Checks a command's --json output against docs/cli-json.schema.json, so that the document and
// the program cannot drift apart. Only what that file uses is understood: type, properties,
// required, additionalProperties (false or a schema) and items.

#include <fstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace torvane::testing {

// The schema of one command ("info", "logger list"...) from the document.
inline nlohmann::json DocumentedJson(const std::string& command) {
    std::ifstream in(TORVANE_CLI_JSON_SCHEMA);
    return nlohmann::json::parse(in).at("$defs").at(command);
}

inline bool HasType(const nlohmann::json& value, const std::string& type) {
    if (type == "object") {
        return value.is_object();
    }
    if (type == "array") {
        return value.is_array();
    }
    if (type == "string") {
        return value.is_string();
    }
    if (type == "boolean") {
        return value.is_boolean();
    }
    if (type == "integer") {
        return value.is_number_integer();
    }
    return type == "number" && value.is_number();
}

// Every place where value differs from schema, as "path: what"; empty when they agree.
inline std::vector<std::string> Undocumented(const nlohmann::json& schema,
                                             const nlohmann::json& value,
                                             const std::string& path = "$") {
    std::vector<std::string> found;
    const auto add = [&found](const std::vector<std::string>& more) {
        found.insert(found.end(), more.begin(), more.end());
    };
    const std::string type = schema.value("type", "");
    if (!HasType(value, type)) {
        return {path + ": " + value.dump() + " is not of type " + type};
    }
    if (value.is_array() && schema.contains("items")) {
        for (std::size_t i = 0; i < value.size(); ++i) {
            add(Undocumented(schema["items"], value[i], path + "[" + std::to_string(i) + "]"));
        }
    }
    if (!value.is_object()) {
        return found;
    }
    for (const auto& key : schema.value("required", nlohmann::json::array())) {
        if (!value.contains(key.get<std::string>())) {
            found.push_back(path + ": no key " + key.get<std::string>());
        }
    }
    const auto properties = schema.value("properties", nlohmann::json::object());
    const auto extra = schema.value("additionalProperties", nlohmann::json(true));
    for (const auto& [key, member] : value.items()) {
        if (properties.contains(key)) {
            add(Undocumented(properties[key], member, path + "." + key));
        } else if (extra.is_object()) {
            add(Undocumented(extra, member, path + "." + key));
        } else if (extra == false) {
            found.push_back(path + ": key " + key + " is not documented");
        }
    }
    return found;
}

} // namespace torvane::testing
