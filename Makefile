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

.PHONY: deps configure build test test-sanitize run bench check-layering clean

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

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) build-bench
