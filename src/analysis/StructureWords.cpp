#include "analysis/StructureWords.h"

namespace tarnwick {

ObjectType objectTypeNamed(std::string_view line)
{
    std::size_t best = objectTypeNames.size();
    for (std::size_t slash = line.find('/'); slash < line.size() && best > 0;
         slash = line.find('/', slash + 1)) {
        const std::string_view name = line.substr(slash);
        for (std::size_t index = 0; index < best; ++index) {
            if (name.size() > 1 && name[1] == objectTypeNames[index].name[1]
                && name.starts_with(objectTypeNames[index].name))
                best = index;
        }
    }
    return best < objectTypeNames.size() ? objectTypeNames[best].type : ObjectType::isPlain;
}

} // namespace tarnwick
