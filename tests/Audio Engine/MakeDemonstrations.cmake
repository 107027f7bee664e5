# Creates FOLDER/1.m4a to FOLDER/80.m4a, one second each, with four different tones.

file(MAKE_DIRECTORY "${FOLDER}")
foreach(tone RANGE 1 4)
    math(EXPR frequency "110 * ${tone}")
    execute_process(
        COMMAND "${FFMPEG}" -nostdin -loglevel error -y
            -f lavfi -i "sine=frequency=${frequency}:sample_rate=44100:duration=1"
            -ac 2 -c:a aac -b:a 64k "${FOLDER}/${tone}.m4a"
        COMMAND_ERROR_IS_FATAL ANY)
endforeach()
foreach(number RANGE 5 80)
    math(EXPR tone "(${number} - 1) % 4 + 1")
    file(COPY_FILE "${FOLDER}/${tone}.m4a" "${FOLDER}/${number}.m4a")
endforeach()
file(TOUCH "${STAMP}")
