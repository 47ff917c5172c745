#pragma once

// Keyed messages of the C-level code, read from dictionary files and printed on standard output. The language
// comes from the environment: GEOLANGUE names it, LUMAGRAF_HOME is the folder that holds
// MESSAGES/geodico.<language> with its index, MON_DICO lists further dictionaries that go before it, separated
// by ";".
//
// The state is one table for the whole process, without locks: these functions belong to the thread of the
// windows. A fault while the dictionaries are set up is printed and ends the process with status 0.

#ifdef __cplusplus
extern "C" {
#endif

/// Chooses the language and finds the dictionaries. Called by the others on first use.
void dico_init(void);

/// Adds a dictionary that goes before those there are. path: its data file; the index has ".idx" behind it.
void dico_add_file(const char *path);

/// Adds each dictionary of a list that is separated by ";". An empty element is a dictionary that is missing.
void dico_add_list(const char *list);

/// Looks the message up, fills in the printf arguments and prints it with the prefix of its kind. An unknown
/// key prints nothing.
void dico_message(const char *key, ...);

/// 1 when the finished text begins with the prefix of errors, in small letters or capitals; 0 otherwise.
int dico_is_error(const char *text);

/// What is called with each finished message; none at first.
void dico_set_callback(void (*callback)(const char *text));

/// Whether a message that dico_is_error() recognises ends the process with status -1; off at first.
void dico_set_exit_on_error(int on);

#ifdef __cplusplus
}
#endif
