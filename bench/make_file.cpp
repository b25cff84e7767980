// make_file SHAPE [SIZE] FILE: writes a made file. Without arguments, lists the shapes.

#include "Shapes.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

using namespace tarnwick;

int main(int count, char** arguments)
{
    if (count < 3) {
        for (const shapes::Shape& shape : shapes::all())
            std::printf("%-7s %-19s %10zu  %s\n", shape.isHostile ? "hostile" : "usual", shape.name,
                shape.usualSize, shape.meaning);
        return count == 1 ? 0 : 2;
    }
    const shapes::Shape* shape = shapes::named(arguments[1]);
    if (!shape) {
        std::fprintf(stderr, "make_file: no shape %s\n", arguments[1]);
        return 2;
    }
    const std::size_t size
        = count > 3 ? std::strtoull(arguments[2], nullptr, 10) : shape->usualSize;
    std::ofstream file(arguments[count - 1], std::ios::binary);
    shape->write(size, [&](std::string_view stretch) {
        file.write(stretch.data(), static_cast<std::streamsize>(stretch.size()));
    });
    file.close();
    if (!file) {
        std::fprintf(stderr, "make_file: cannot write %s\n", arguments[count - 1]);
        return 1;
    }
    return 0;
}
