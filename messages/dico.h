#pragma once

// Messages by key for the C-level code, read from dictionary files and printed on standard output. Three
// environment variables choose the dictionaries: GEOLANGUE names the language, LUMAGRAF_HOME is the folder that
// holds MESSAGES/geodico.<language> with its index, and MON_DICO lists further dictionaries, separated by ";",
// that are searched first.
//
// The state is one table for the whole process, without locks: only the thread of the windows may call these
// functions. If the dictionaries cannot be set up, the reason is printed and the process ends with status 0.

#ifdef __cplusplus
extern "C" {
#endif

/// Chooses the language, finds the dictionaries, and resets the callback and the exit on errors: a program that
/// wants those calls this first. The functions that need a dictionary call it on first use.
void dico_init(void);

/// 1 when dico_init() would find every dictionary that the variables name; 0 when it would end the process.
int dico_is_available(void);

/// Adds a dictionary that is searched before all others so far. path: its data file; the index file has ".idx"
/// appended.
void dico_add_file(const char *path);

/// Adds each dictionary of a list separated by ";". An empty element counts as a missing dictionary.
void dico_add_list(const char *list);

/// Finds the message, replaces its printf conversions by the arguments and prints it with the prefix of its
/// kind. Prints nothing for an unknown key.
void dico_message(const char *key, ...);

/// 1 when the finished text begins with the prefix of errors, compared without regard to the case of A to Z; 0
/// otherwise.
int dico_is_error(const char *text);

/// Sets the function that is called with each finished message; none after dico_init().
void dico_set_callback(void (*callback)(const char *text));

/// Sets whether a message that dico_is_error() recognises ends the process with status -1; off after
/// dico_init().
void dico_set_exit_on_error(int on);

#ifdef __cplusplus
}
#endif
