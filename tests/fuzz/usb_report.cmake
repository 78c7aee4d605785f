find_package(nlohmann_json 3.11 REQUIRED)
orvalen_fuzzer(usb_report orvalen_mirroring nlohmann_json::nlohmann_json)
