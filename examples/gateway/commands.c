// SPDX-License-Identifier: MIT
#include "commands.h"

#include <errno.h>
#include <inttypes.h>
#include <stdbool.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "include_c"

enum { VALUE_SIZE = 256 };

static bool is_number(const char* type) {
  return strcmp(type, "int") == 0 || strcmp(type, "uint") == 0 || strcmp(type, "bool") == 0;
}

static void print_number(const char* name, const char* type, int32_t number) {
  if (strcmp(type, "int") == 0) {
    printf("%s = %" PRId32 "\n", name, number);
  } else {
    printf("%s = %" PRIu32 "\n", name, (uint32_t)number);
  }
}

static int get_number(const char* name, const char* type) {
  int32_t number = 0;
  int result = c_cfm_get_value(name, type, &number, sizeof number);
  if (result == C_RESULT_OK) print_number(name, type, number);
  return result;
}

static int get_text(const char* name, const char* type) {
  char text[VALUE_SIZE] = "";
  int result = c_cfm_get_value(name, type, text, sizeof text);
  if (result == C_RESULT_OK) printf("%s = %s\n", name, text);
  return result;
}

static int parse_integer(const char* text, intmax_t least, intmax_t greatest, int32_t* number) {
  char* end;
  errno = 0;
  intmax_t value = strtoimax(text, &end, 10);
  if (errno != 0 || end == text || *end != '\0' || value < least || value > greatest) return C_RESULT_PARAM;
  const uint32_t bits = (uint32_t)value;
  memcpy(number, &bits, sizeof bits);
  return C_RESULT_OK;
}

static int parse_number(const char* type, const char* text, int32_t* number) {
  if (strcmp(type, "int") == 0) return parse_integer(text, INT32_MIN, INT32_MAX, number);
  if (strcmp(type, "uint") == 0) return parse_integer(text, 0, UINT32_MAX, number);
  int flag;
  int result = c_cfm_str2bool(text, &flag);
  *number = flag;
  return result;
}

static int set_number(const char* name, const char* type, const char* text) {
  int32_t number;
  int result = parse_number(type, text, &number);
  return result == C_RESULT_OK ? c_cfm_set_value(name, 0, type, &number, sizeof number) : result;
}

static int set_text(const char* name, const char* type, const char* text) {
  return c_cfm_set_value(name, 0, type, text, (unsigned int)strlen(text) + 1);
}

static int set(const char* name, const char* type, const char* value) {
  int result = is_number(type) ? set_number(name, type, value) : set_text(name, type, value);
  if (result == C_RESULT_OK) result = c_cfm_save_config();
  if (result == C_RESULT_OK) printf("%s is set\n", name);
  return result;
}

// Terminates the first word of the text and returns the rest, which is empty after the last word.
static char* rest_of(char* text) {
  char* end = text + strcspn(text, " ");
  if (*end != '\0') *end++ = '\0';
  return end;
}

void commands_obey(char* line) {
  char* name = rest_of(line);
  char* type = rest_of(name);
  char* value = rest_of(type);
  int result = C_RESULT_PARAM;
  if (strcmp(line, "set") == 0) result = set(name, type, value);
  if (strcmp(line, "get") == 0) result = is_number(type) ? get_number(name, type) : get_text(name, type);
  if (result != C_RESULT_OK) printf("problem: %s %s: result %d\n", line, name, result);
}
