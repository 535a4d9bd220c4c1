// The random numbers of a run. The seed is a new one for each run, or what the environment
// gives as TABULEX_SEED; a test that fails prints it. TABULEX_ROUNDS makes the random tests
// that many times as long.
#pragma once

// The same for all tests of a program.
unsigned Seed();

// A number of rounds, times TABULEX_ROUNDS.
int Rounds(int nUsual);
