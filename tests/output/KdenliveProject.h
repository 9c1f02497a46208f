#pragma once

#include <map>
#include <string>
#include <vector>

#include <QtCore/QXmlStreamReader>

namespace larkspan::test {

using Properties = std::map<std::string, std::string>;

// A project as it was read: its elements with their attributes, and the properties of each by its id.
struct ReadProject
{
    explicit ReadProject(const QString &text)
    {
        QXmlStreamReader xml(text);
        std::string id;
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement) {
                continue;
            }
            if (xml.name() == QLatin1String("property")) {
                const std::string name = xml.attributes().value(QLatin1String("name")).toString().toStdString();
                properties[id][name] = xml.readElementText().toStdString();
            } else if (xml.name() == QLatin1String("entry")) {
                entries[id].push_back(xml.attributes().value(QLatin1String("producer")).toString().toStdString());
            } else {
                id = xml.attributes().value(QLatin1String("id")).toString().toStdString();
                attributes[xml.name().toString().toStdString()] = xml.attributes();
            }
        }
        problem = xml.errorString().toStdString();
    }

    std::string attribute(const std::string &element, const QString &name) const
    {
        return attributes.at(element).value(name).toString().toStdString();
    }

    // The names of the clips in each folder.
    std::multimap<std::string, std::string> folders() const
    {
        std::multimap<std::string, std::string> result;
        for (const auto &[id, clip] : properties) {
            if (const auto folder = clip.find("kdenlive:folderid"); folder != clip.end()) {
                result.emplace(properties.at("main_bin").at("kdenlive:folder.-1." + folder->second),
                               clip.at("kdenlive:clipname"));
            }
        }
        return result;
    }

    std::map<std::string, Properties> properties;
    std::map<std::string, std::vector<std::string>> entries;
    std::map<std::string, QXmlStreamAttributes> attributes; // of the last element of each name
    std::string problem;
};

} // namespace larkspan::test
