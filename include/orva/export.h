/* Marks what leaves the two libraries. Everything not marked is hidden; cmake/exports/ lists, per platform, the exact
 * names.
 */
#ifndef ORVA_EXPORT_H
#define ORVA_EXPORT_H

#if defined(_WIN32)
#if defined(ORVA_ACC_BUILDING)
#define ORVA_API __declspec(dllexport)
#else
#define ORVA_API __declspec(dllimport)
#endif
#if defined(ORVA_TIDY_BUILDING)
#define ORVA_TIDY_API __declspec(dllexport)
#else
#define ORVA_TIDY_API __declspec(dllimport)
#endif
#else
#define ORVA_API __attribute__((visibility("default")))
#define ORVA_TIDY_API __attribute__((visibility("default")))
#endif

#endif
