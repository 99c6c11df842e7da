# Refuses a build whose initial log level does not exist. Alone: cmake -DKORVALE_LOG_LEVEL=2 -P FILE
if(NOT KORVALE_LOG_LEVEL MATCHES "^[0-3]$")
  message(FATAL_ERROR "KORVALE_LOG_LEVEL is 0, 1, 2 or 3, not ${KORVALE_LOG_LEVEL}")
endif()
