// The random numbers of a run. The seed is a new one for each run, or what the environment
// gives as TABULEX_SEED; a test that fails prints it. The length of the random tests is
// multiplied by TABULEX_ROUNDS.
#pragma once

// The same for all tests of a program.
unsigned Seed();

// A number of rounds, times TABULEX_ROUNDS; half of it under the address sanitizer, and a quarter
// under that of threads.
int Rounds(int nUsual);
