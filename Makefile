# Entry points: `make test`, `make run`, `make bench`. Each installs what is missing first.
BUILD ?= build
ASAN_BUILD ?= build-asan
JOBS ?= $(shell nproc)
export CCACHE_BASEDIR := $(CURDIR)
export CCACHE_NOHASHDIR := 1

CMAKE_FLAGS := -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
ifeq ($(CI),true)
CMAKE_FLAGS += -DDSE_WERROR=ON
endif

FUZZ_SECONDS ?= 60

.PHONY: deps configure build test test-sanitize run bench fuzz check-layering clean

deps:
	bash scripts/install-deps.sh

configure: deps
	cmake -S . -B $(BUILD) $(CMAKE_FLAGS)

build: configure
	cmake --build $(BUILD) -j $(JOBS)

check-layering:
	bash scripts/check-layering.sh

test: build check-layering
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

test-sanitize: deps
	cmake -S . -B $(ASAN_BUILD) $(CMAKE_FLAGS) -DDSE_WERROR=OFF -DDSE_SANITIZE=ON -DDSE_BUILD_BENCH=OFF
	cmake --build $(ASAN_BUILD) -j $(JOBS)
	cd $(ASAN_BUILD) && ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 ctest --output-on-failure -j $(JOBS)

run: build
	bash scripts/run.sh $(BUILD)

bench: deps
	cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DDSE_BUILD_TESTS=OFF
	cmake --build build-bench -j $(JOBS)
	bash scripts/bench.sh build-bench

# The loaders under libFuzzer with address and undefined-behaviour sanitizers.
fuzz: deps
	bash scripts/install-deps.sh --fuzz
	CC=clang CXX=clang++ cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DDSE_FUZZ=ON \
	  -DDSE_BUILD_TESTS=OFF -DDSE_BUILD_BENCH=OFF
	cmake --build build-fuzz -j $(JOBS) --target fuzz_lvd_binary fuzz_lvd_xml fuzz_expr fuzz_barinfo fuzz_script fuzz_xmldoc fuzz_dxf
	set -e; for T in lvd_binary:bin lvd_xml:xml expr:expr barinfo:barinfo script:script xmldoc:xmldoc dxf:dxf; do \
	  N=$${T%%:*}; S=$${T##*:}; mkdir -p build-fuzz/corpus-$$S; \
	  LSAN_OPTIONS=suppressions=fuzz/lsan.supp build-fuzz/fuzz/fuzz_$$N -max_total_time=$(FUZZ_SECONDS) -max_len=4096 \
	    build-fuzz/corpus-$$S fuzz/seeds/$$S; \
	done

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) build-bench build-fuzz
