// What the program's output goes to.
#pragma once

bool standardErrorIsTerminal();

bool standardOutputIsTerminal();
