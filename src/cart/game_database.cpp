#include "cart/game_database.h"

#include <algorithm>

const GbaGameRecord *findGame(std::string_view key)
{
    const auto *game =
        std::find_if(gameDatabase.begin(), gameDatabase.end(), [key](const GbaGameRecord &record) {
            return std::string_view(record.codes).find(key) != std::string_view::npos;
        });
    return game == gameDatabase.end() ? nullptr : game;
}
