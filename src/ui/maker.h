// Who makes this program, as the tab "About" shows it. Whoever distributes the program under
// another name changes it here and nowhere else. None of it is translated.
#pragma once

constexpr char kMakerName[] = "Velora";
constexpr char kMakerYears[] = "2026";
constexpr char kMakerWebAddress[] = "https://velora.example";
constexpr char kMakerEmail[] = "support@velora.example";
