# The two commands of the README, plus the checks CI runs.
#   make demo            build and run the purchase-order demo on its bundled sample (installs
#                        missing Debian packages as root)
#   make test            build and run every test (installs missing Debian packages as root)
#   make test-sanitize   the same suite under AddressSanitizer and UndefinedBehaviorSanitizer
#   make test-tsan       the concurrency tests under ThreadSanitizer
#   make bench           build and run the benchmarks
#   make format          apply .clang-format;  make format-check  verify it (CI)
#   make install-check   install into a temporary prefix and build a consumer against it

PACKAGES := cmake g++ ninja-build pkg-config libexpat1-dev libpcre2-dev zlib1g-dev \
            libgtest-dev libbenchmark-dev
JOBS ?= $(shell nproc 2>/dev/null || echo 2)
BUILD ?= build
# CI turns warnings in the library's own code into errors.
WERROR := $(if $(CI),ON,OFF)
CMAKE_ARGS := -G Ninja -DQVXML_WERROR=$(WERROR)
SOURCES = $(shell git ls-files '*.cpp' '*.h' 2>/dev/null || find include src tests bench -name '*.cpp' -o -name '*.h')

.PHONY: deps configure build test test-sanitize test-tsan bench format format-check install-check demo

deps:
	@./.ci/install-deps.sh $(PACKAGES)

configure: deps
	cmake -S . -B $(BUILD) $(CMAKE_ARGS)

build: configure
	cmake --build $(BUILD) -j $(JOBS)

# Builds the library and the demo only, so a first run is quick.
demo: configure
	cmake --build $(BUILD) -j $(JOBS) --target purchase_order_demo
	./$(BUILD)/examples/purchase_order_demo examples/purchase-order

test: build
	ctest --test-dir $(BUILD) --output-on-failure -j $(JOBS)

test-sanitize: deps
	cmake -S . -B build-sanitize $(CMAKE_ARGS) -DCMAKE_BUILD_TYPE=Debug -DQVXML_BUILD_BENCH=OFF \
	    -DCMAKE_CXX_FLAGS="-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer"
	cmake --build build-sanitize -j $(JOBS)
	ASAN_OPTIONS=detect_leaks=1:abort_on_error=1:strict_string_checks=1 \
	UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
	    ctest --test-dir build-sanitize --output-on-failure -j $(JOBS)

test-tsan: deps
	cmake -S . -B build-tsan $(CMAKE_ARGS) -DCMAKE_BUILD_TYPE=Debug -DQVXML_BUILD_BENCH=OFF \
	    -DCMAKE_CXX_FLAGS="-fsanitize=thread -fno-omit-frame-pointer"
	cmake --build build-tsan -j $(JOBS) --target qvxml_foundation_tests qvxml_types_tests \
	    qvxml_binding_tests
	for t in foundation types binding; do \
	    TSAN_OPTIONS=halt_on_error=1 ./build-tsan/tests/qvxml_$${t}_tests --gtest_filter='*Thread*' || exit 1; \
	done

bench: build
	@for b in $(BUILD)/bench/*_bench; do echo "== $$b"; $$b || exit 1; done

format:
	clang-format -i $(SOURCES)

format-check:
	@./.ci/install-deps.sh clang-format
	clang-format --dry-run -Werror $(SOURCES)

install-check: build
	./tests/install/check.sh $(BUILD)
