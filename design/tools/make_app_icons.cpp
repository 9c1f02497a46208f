// make_app_icons FOLDER: draws the program's icon in the sizes of a desktop's theme, FOLDER/NxN/apps/larkspan.png.
#include <filesystem>
#include <iostream>

#include <QtGui/QGuiApplication>

#include "design/AppIcon.h"

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    if (argc != 2) {
        std::cerr << "usage: make_app_icons FOLDER\n";
        return 2;
    }
    for (const int size : larkspan::appIconSizes()) {
        const std::filesystem::path folder =
            std::filesystem::path(argv[1]) / (std::to_string(size) + "x" + std::to_string(size)) / "apps";
        std::filesystem::create_directories(folder);
        const std::filesystem::path file = folder / "larkspan.png";
        if (!larkspan::appIconImage(size).save(QString::fromStdString(file.string()))) {
            std::cerr << file << " can't be written\n";
            return 1;
        }
    }
    return 0;
}
